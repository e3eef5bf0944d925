#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace CleanCore {

/// Entry names packed into one block of memory, so that a million subfolders cost no more than
/// their names. They are taken out in no particular order.
class NameList
{
public:
    [[nodiscard]] bool isEmpty() const { return m_names.empty(); }
    [[nodiscard]] bool holdsSeveral() const { return m_names.find('\0') + 1 < m_names.size(); }
    [[nodiscard]] std::size_t bytes() const { return m_names.size(); }

    void add(std::string_view name)
    {
        m_names.append(name);
        m_names.push_back('\0');
    }

    /// Takes one name out; the list must not be empty.
    [[nodiscard]] std::string takeLast()
    {
        const std::size_t begin = m_names.rfind('\0', m_names.size() - 2) + 1;
        std::string name = m_names.substr(begin, m_names.size() - begin - 1);
        m_names.resize(begin);
        return name;
    }

    /// Takes about half of the names out, at least one; the list must not be empty.
    [[nodiscard]] NameList takeHalf()
    {
        const std::size_t begin = m_names.rfind('\0', (m_names.size() - 1) / 2) + 1;
        NameList half;
        half.m_names = m_names.substr(begin);
        m_names.resize(begin);
        return half;
    }

private:
    // Every name with a NUL behind it. rfind's "not found" plus one is 0: the first name.
    std::string m_names;
};

} // namespace CleanCore
