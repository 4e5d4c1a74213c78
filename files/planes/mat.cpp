// Writes MAT through libmatio, which needs a file with a path; this one is in memory.
#include "files/planes/mat.h"

#include <matio.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <memory>
#include <utility>

#include "base/error.h"
#include "orvanel/orvanel.h"

namespace orvanel::files {
namespace {

constexpr std::size_t kHeaderText = 115;  // bytes of text at the beginning of a file, without the last

[[noreturn]] void Refuse(const std::string& reason) { throw Error("cannot make a MAT file: " + reason); }

// An anonymous file that vanishes with this object.
class MemoryFile {
 public:
  MemoryFile() : descriptor_(memfd_create("planes.mat", MFD_CLOEXEC)) {
    if (descriptor_ == -1) Refuse("the system gives no memory for it");
  }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile() { close(descriptor_); }

  std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

  std::string Bytes() const {
    std::string bytes;
    char piece[1 << 16];
    ssize_t count;
    while ((count = pread(descriptor_, piece, sizeof piece, static_cast<off_t>(bytes.size()))) > 0) {
      bytes.append(piece, static_cast<std::size_t>(count));
    }
    if (count < 0) Refuse("it cannot be read back");
    return bytes;
  }

 private:
  int descriptor_;
};

using Variable = std::unique_ptr<matvar_t, void (*)(matvar_t*)>;

Variable Owned(matvar_t* variable) {
  if (variable == nullptr) Refuse("libmatio has no memory");
  return {variable, Mat_VarFree};
}

// A name with MATLAB's characters only, letters, digits and underscores: "ring_acuity_0_5_gap_right_seen".
std::string Identifier(std::string name) {
  std::erase(name, '+');  // of an exponent; a minus becomes an underscore, so that both differ
  std::replace_if(
      name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
  return name;
}

Variable Numbers(const std::string& name, std::size_t rows, std::size_t columns, const double* byColumns) {
  const std::size_t shape[] = {rows, columns};
  // The library copies the data and only lacks a const.
  return Owned(Mat_VarCreate(name.c_str(), MAT_C_DOUBLE, MAT_T_DOUBLE, 2, const_cast<std::size_t*>(shape),
                             const_cast<double*>(byColumns), 0));
}

Variable Text(const std::string& name, const std::string& text) {
  const std::size_t shape[] = {text.empty() ? std::size_t{0} : std::size_t{1}, text.size()};
  return Owned(Mat_VarCreate(name.c_str(), MAT_C_CHAR, MAT_T_UTF8, 2, const_cast<std::size_t*>(shape),
                             const_cast<char*>(text.c_str()), 0));
}

Variable PlaneVariable(const NamedPlane& plane) {
  const Plane& samples = *plane.samples;
  std::vector<double> byColumns;
  byColumns.reserve(samples.size());
  for (int c = 0; c < samples.columns(); ++c) {
    for (int r = 0; r < samples.rows(); ++r) byColumns.push_back(samples.At(r, c));
  }
  return Numbers(Identifier(plane.name), static_cast<std::size_t>(samples.rows()),
                 static_cast<std::size_t>(samples.columns()), byColumns.data());
}

Variable FactVariable(const Fact& fact) {
  if (const auto* text = std::get_if<std::string>(&fact.value)) return Text(fact.name, *text);
  if (const auto* number = std::get_if<double>(&fact.value)) return Numbers(fact.name, 1, 1, number);
  const auto& numbers = std::get<std::vector<double>>(fact.value);
  return Numbers(fact.name, 1, numbers.size(), numbers.data());
}

// A structure with one value in each field.
Variable Structure(const std::string& name, std::vector<std::pair<std::string, Variable>>&& fields) {
  std::vector<const char*> names;
  for (const auto& [field, value] : fields) names.push_back(field.c_str());
  std::size_t shape[] = {1, 1};
  Variable structure =
      Owned(Mat_VarCreateStruct(name.c_str(), 2, shape, names.data(), static_cast<unsigned>(names.size())));
  for (auto& [field, value] : fields) {
    Mat_VarSetStructFieldByName(structure.get(), field.c_str(), 0, value.release());
  }
  return structure;
}

Variable FactStructure(const std::string& name, const std::vector<Fact>& facts) {
  std::vector<std::pair<std::string, Variable>> fields;
  for (const Fact& fact : facts) fields.emplace_back(fact.name, FactVariable(fact));
  return Structure(name, std::move(fields));
}

// A structure with a field for each plane; `value` makes the field.
template <class Value>
Variable ByPlane(const std::string& name, const PlaneSet& set, const Value& value) {
  std::vector<std::pair<std::string, Variable>> fields;
  for (const NamedPlane& plane : set.planes) {
    const std::string field = Identifier(plane.name);
    fields.emplace_back(field, value(field, plane));
  }
  return Structure(name, std::move(fields));
}

void Write(mat_t* file, const Variable& variable) {
  if (Mat_VarWrite(file, variable.get(), MAT_COMPRESSION_ZLIB) != 0) Refuse("libmatio cannot write it");
}

}  // namespace

std::string EncodeMat(const PlaneSet& set) {
  const MemoryFile memory;
  {
    // libmatio's own header has the date. It ends every header with a zero byte, which here is the last.
    std::string header = "MATLAB 5.0 MAT-file, created by orvanel " ORVANEL_VERSION;
    header.resize(kHeaderText, ' ');
    const std::unique_ptr<mat_t, int (*)(mat_t*)> file(
        Mat_CreateVer(memory.path().c_str(), header.c_str(), MAT_FT_MAT5), Mat_Close);
    if (file == nullptr) Refuse("libmatio cannot open " + memory.path());
    for (const NamedPlane& plane : set.planes) Write(file.get(), PlaneVariable(plane));
    Write(file.get(), ByPlane("units", set,
                              [](const std::string& name, const NamedPlane& plane) { return Text(name, plane.unit); }));
    Write(file.get(), ByPlane("descriptions", set, [](const std::string& name, const NamedPlane& plane) {
            return Text(name, plane.description);
          }));
    Write(file.get(), ByPlane("spacings", set, [](const std::string& name, const NamedPlane& plane) {
            return FactStructure(name, plane.spacings);
          }));
    Write(file.get(), ByPlane("views", set, [](const std::string& name, const NamedPlane& plane) {
            return FactStructure(name, plane.view);
          }));
    Write(file.get(), FactStructure("eye", set.facts));
  }
  return memory.Bytes();
}

}  // namespace orvanel::files
