#include "CleanCore/FileSystem/Walking/DirectoryReader.h"

#include <cerrno>
#include <dirent.h>
#include <utility>

namespace CleanCore {

DirectoryReader::DirectoryReader() : m_buffer(new std::byte[bufferBytes]) {}

int DirectoryReader::readBatch(int directory)
{
    m_filled = 0;
    for (;;) {
        const ssize_t count = ::getdents64(directory, m_buffer.get(), bufferBytes);
        if (count >= 0) {
            m_filled = static_cast<std::size_t>(count);
            return count > 0 ? 1 : 0;
        }
        if (errno != EINTR) {
            return -errno;
        }
    }
}

DirectoryReader DirectoryReader::takeBatch()
{
    DirectoryReader batch;
    std::swap(batch.m_buffer, m_buffer);
    batch.m_filled = std::exchange(m_filled, 0);
    return batch;
}

std::size_t DirectoryReader::next(std::size_t at) const
{
    return at + reinterpret_cast<const dirent64*>(m_buffer.get() + at)->d_reclen;
}

bool DirectoryReader::isKnownFolder(std::size_t at) const
{
    return reinterpret_cast<const dirent64*>(m_buffer.get() + at)->d_type == DT_DIR;
}

const char* DirectoryReader::nameAt(std::size_t at) const
{
    return reinterpret_cast<const dirent64*>(m_buffer.get() + at)->d_name;
}

} // namespace CleanCore
