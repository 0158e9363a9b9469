#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <utility>

#include "byte_stream_p.h"

namespace quillmate::office {

/// A stream that ends where a number of bytes that it shares with others is used up.
class EvidenceStream final : public ByteStream {
 public:
  EvidenceStream(std::unique_ptr<ByteStream> stream, std::uint64_t& left) : stream_(std::move(stream)), left_(left) {}
  std::size_t Read(char* to, std::size_t count) override {
    const std::size_t got = stream_->Read(to, static_cast<std::size_t>(std::min<std::uint64_t>(count, left_)));
    left_ -= got;
    return got;
  }

 private:
  std::unique_ptr<ByteStream> stream_;
  std::uint64_t& left_;
};

}  // namespace quillmate::office
