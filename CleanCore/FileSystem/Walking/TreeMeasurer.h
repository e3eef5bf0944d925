#pragma once

#include "CleanCore/FileSystem/FileManager.h"
#include "CleanCore/Support/FileDescriptor.h"

#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <sys/types.h>
#include <vector>

namespace CleanCore {

class TaskPool;

/// Measures entries of one folder with everything below them, on all workers of a pool.
///
/// An entry's size is its allocated size; a folder's is the sum over everything inside it, the
/// folder's own blocks not counted. Links are neither followed nor counted below an entry. Entries
/// behind another mount, or in a folder that cannot be entered, are skipped; the measure says so.
///
/// The calling thread takes part in the work and may be a worker of the pool. It stops within a few
/// dozen entries of a stop request; the figures are then incomplete.
class TreeMeasurer
{
public:
    explicit TreeMeasurer(std::shared_ptr<TaskPool> pool) : m_pool(std::move(pool)) {}

    /// One measure for each of `names`, in their order, read relative to `folder`. Entries of
    /// others than `owner`, if given, are foreign.
    [[nodiscard]] std::vector<EntryMeasure> measure(FileDescriptor folder,
                                                    std::span<const std::string> names,
                                                    const std::stop_token& stop,
                                                    std::optional<uid_t> owner = {}) const;

private:
    std::shared_ptr<TaskPool> m_pool;
};

} // namespace CleanCore
