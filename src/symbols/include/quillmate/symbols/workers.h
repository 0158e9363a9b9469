#pragma once

#include <cstddef>
#include <functional>

/// Work on many modules side by side.
namespace quillmate::symbols {

/// How many threads a request for `threads` (0: one per core) gives for so many pieces of work.
unsigned WorkerCount(unsigned threads, std::size_t pieces) noexcept;

/// Calls work(worker, piece) for every piece, `worker` counting from 0 to workers - 1. Pieces are taken in their order
/// by whoever is free; threads that can't be started leave their share to the others. Returns when all are done.
/// `work` must not throw but std::bad_alloc, which is thrown on.
void ForEachPiece(unsigned workers, std::size_t pieces, const std::function<void(unsigned, std::size_t)>& work);

}  // namespace quillmate::symbols
