// Writes NPY: magic, version, header length, a Python dictionary padded to a multiple of 64 bytes, the numbers.
#include "files/planes/npy.h"

#include <cstdint>
#include <cstring>

namespace orvanel::files {
namespace {

template <class Integer>
void AppendLittleEndian(std::string& bytes, Integer value) {
  for (std::size_t i = 0; i < sizeof value; ++i) bytes += static_cast<char>(value >> (8 * i) & 0xff);
}

}  // namespace

std::string EncodeNpy(const PlaneSet& set) {
  const Plane& samples = *set.planes.at(0).samples;
  constexpr std::size_t kPreamble = 10, kAlignment = 64;
  std::string header = "{'descr': '<f8', 'fortran_order': False, 'shape': (" + std::to_string(samples.rows()) + ", " +
                       std::to_string(samples.columns()) + "), }";
  while ((kPreamble + header.size() + 1) % kAlignment != 0) header += ' ';
  header += '\n';

  std::string bytes("\x93NUMPY\x01\x00", 8);
  AppendLittleEndian(bytes, static_cast<std::uint16_t>(header.size()));
  bytes += header;
  bytes.reserve(bytes.size() + samples.size() * sizeof(double));
  for (const double value : samples) {
    std::uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    AppendLittleEndian(bytes, bits);
  }
  return bytes;
}

}  // namespace orvanel::files
