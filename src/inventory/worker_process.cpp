#include <array>
#include <cstring>

#include "worker_process_p.h"

namespace quillmate::inventory {

bool Pipes::Send(char kind, std::string_view bytes) {
  std::string message(sizeof(std::uint32_t) + 1, kind);
  const auto size = static_cast<std::uint32_t>(bytes.size());
  std::memcpy(message.data(), &size, sizeof(size));
  // Short ones in one piece.
  constexpr std::size_t kShort = 4096;
  if (bytes.size() > kShort) return Write(message.data(), message.size()) && Write(bytes.data(), bytes.size());
  message += bytes;
  return Write(message.data(), message.size());
}

std::optional<Message> Pipes::Receive() {
  std::array<char, sizeof(std::uint32_t) + 1> head;
  if (!Read(head.data(), head.size())) return std::nullopt;
  std::uint32_t size = 0;
  std::memcpy(&size, head.data(), sizeof(size));
  Message message;
  message.kind = head.back();
  message.bytes.resize(size);
  if (!Read(message.bytes.data(), size)) return std::nullopt;
  return message;
}

}  // namespace quillmate::inventory
