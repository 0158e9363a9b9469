#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>
#include <string>

#include <quillmate/files/failure.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/files/sha256.h>

#include "sha256_p.h"

#if defined(__x86_64__) && defined(__GNUC__)
#include <cpuid.h>
#include <immintrin.h>
#endif

namespace quillmate::files {
namespace {

alignas(16) constexpr std::array<std::uint32_t, 64> kConstants{
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

std::uint32_t BigEndian(const unsigned char* bytes) noexcept {
  return std::uint32_t{bytes[0]} << 24U | std::uint32_t{bytes[1]} << 16U | std::uint32_t{bytes[2]} << 8U | bytes[3];
}

#if defined(__x86_64__) && defined(__GNUC__)

/// Tells whether the processor has the instructions; it also has to have SSE 4.1, which shuffles the words.
bool ProcessorAddsSha256() noexcept {
  unsigned a = 0, b = 0, c = 0, d = 0;
  if (__get_cpuid(1, &a, &b, &c, &d) == 0 || (c & bit_SSE4_1) == 0 || (c & bit_SSSE3) == 0) return false;
  return __get_cpuid_count(7, 0, &a, &b, &c, &d) != 0 && (b & bit_SHA) != 0;
}

/// With the processor's own instructions, which take four rounds' words at a time and keep the state as ABEF and CDGH.
__attribute__((target("sha,sse4.1"))) void AddWithProcessor(Sha256State& state, const unsigned char* block) noexcept {
  const __m128i bigEndian = _mm_set_epi64x(0x0c0d0e0f08090a0b, 0x0405060700010203);
  auto* const words = reinterpret_cast<__m128i*>(state.data());
  const __m128i cdab = _mm_shuffle_epi32(_mm_loadu_si128(words), 0xB1);
  const __m128i efgh = _mm_shuffle_epi32(_mm_loadu_si128(words + 1), 0x1B);
  __m128i abef = _mm_alignr_epi8(cdab, efgh, 8);
  __m128i cdgh = _mm_blend_epi16(efgh, cdab, 0xF0);
  const __m128i abefBefore = abef;
  const __m128i cdghBefore = cdgh;
  // The last sixteen words of the schedule, four in each.
  __m128i schedule[4] = {};
  for (std::size_t i = 0; i < std::size(schedule); ++i) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block) + i);
    schedule[i] = _mm_shuffle_epi8(bytes, bigEndian);
  }
  for (std::size_t step = 0; step < 16; ++step) {
    const __m128i constants = _mm_load_si128(reinterpret_cast<const __m128i*>(kConstants.data()) + step);
    const __m128i now = schedule[step % 4];
    const __m128i sum = _mm_add_epi32(now, constants);
    cdgh = _mm_sha256rnds2_epu32(cdgh, abef, sum);
    abef = _mm_sha256rnds2_epu32(abef, cdgh, _mm_shuffle_epi32(sum, 0x0E));
    const __m128i last = schedule[(step + 3) % 4];
    const __m128i middle = _mm_alignr_epi8(last, schedule[(step + 2) % 4], 4);
    const __m128i begun = _mm_add_epi32(_mm_sha256msg1_epu32(now, schedule[(step + 1) % 4]), middle);
    schedule[step % 4] = _mm_sha256msg2_epu32(begun, last);
  }
  abef = _mm_add_epi32(abef, abefBefore);
  cdgh = _mm_add_epi32(cdgh, cdghBefore);
  const __m128i feba = _mm_shuffle_epi32(abef, 0x1B);
  const __m128i dchg = _mm_shuffle_epi32(cdgh, 0xB1);
  _mm_storeu_si128(words, _mm_blend_epi16(feba, dchg, 0xF0));
  _mm_storeu_si128(words + 1, _mm_alignr_epi8(dchg, feba, 8));
}

#endif

}  // namespace

AddSha256Block* ProcessorsSha256() noexcept {
#if defined(__x86_64__) && defined(__GNUC__)
  static const bool has = ProcessorAddsSha256();
  return has ? &AddWithProcessor : nullptr;
#else
  return nullptr;
#endif
}

void AddSha256BlockAnywhere(Sha256State& state, const unsigned char* block) noexcept {
  std::array<std::uint32_t, 64> w{};
  for (std::size_t i = 0; i < 16; ++i) w[i] = BigEndian(block + 4 * i);
  for (std::size_t i = 16; i < 64; ++i) {
    const std::uint32_t s0 = std::rotr(w[i - 15], 7) ^ std::rotr(w[i - 15], 18) ^ (w[i - 15] >> 3U);
    const std::uint32_t s1 = std::rotr(w[i - 2], 17) ^ std::rotr(w[i - 2], 19) ^ (w[i - 2] >> 10U);
    w[i] = w[i - 16] + s0 + w[i - 7] + s1;
  }
  auto [a, b, c, d, e, f, g, h] = state;
  for (std::size_t i = 0; i < 64; ++i) {
    const std::uint32_t s1 = std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25);
    const std::uint32_t t1 = h + s1 + ((e & f) ^ (~e & g)) + kConstants[i] + w[i];
    const std::uint32_t s0 = std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22);
    const std::uint32_t t2 = s0 + ((a & b) ^ (a & c) ^ (b & c));
    h = g, g = f, f = e, e = d + t1, d = c, c = b, b = a, a = t1 + t2;
  }
  const std::array<std::uint32_t, 8> sum{a, b, c, d, e, f, g, h};
  for (std::size_t i = 0; i < sum.size(); ++i) state[i] += sum[i];
}

void Sha256::AddBlock(const unsigned char* block) noexcept {
  static AddSha256Block* const add = ProcessorsSha256() != nullptr ? ProcessorsSha256() : &AddSha256BlockAnywhere;
  add(state_, block);
}

void Sha256::Add(std::string_view bytes) noexcept {
  size_ += bytes.size();
  while (!bytes.empty()) {
    const std::size_t taken = std::min(bytes.size(), pending_.size() - pendingSize_);
    std::memcpy(pending_.data() + pendingSize_, bytes.data(), taken);
    pendingSize_ += taken;
    bytes.remove_prefix(taken);
    if (pendingSize_ == pending_.size()) {
      AddBlock(pending_.data());
      pendingSize_ = 0;
    }
  }
}

std::string Sha256::Digits() {
  constexpr std::size_t kLengthAt = 56;
  const std::uint64_t bits = size_ * 8;
  Add(std::string_view("\x80", 1));
  while (pendingSize_ != kLengthAt) Add(std::string_view("\0", 1));
  std::string length;
  for (unsigned shift = 64; shift > 0; shift -= 8) length += static_cast<char>(bits >> (shift - 8));
  Add(length);
  std::string digits;
  for (const std::uint32_t word : state_) {
    for (unsigned shift = 32; shift > 0; shift -= 4) digits += "0123456789abcdef"[(word >> (shift - 4)) & 15U];
  }
  return digits;
}

std::string FileHash(const std::filesystem::path& file) try {
  Sha256 sum;
  ReadInPieces(file, [&sum](std::string_view piece) { sum.Add(piece); });
  return sum.Digits();
} catch (const Failure&) {
  return {};
}

}  // namespace quillmate::files
