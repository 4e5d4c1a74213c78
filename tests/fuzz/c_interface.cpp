// Fuzzes the C interface: sequences of calls with hostile arguments. A refused call writes nothing and has a reason; an
// accepted one returns handles and numbers with their promised properties.
#include "orvanel/c_interface.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "base/utf8.h"
#include "tests/fuzz/input.h"
#include "tests/fuzz/require.h"

using orvanel::fuzz::Input;

namespace {

constexpr int kMaxCalls = 10;
constexpr std::size_t kHandles = 4;        // of each kind at a time
constexpr int64_t kLargestObject = 64;     // pixels in a side of what is imaged
constexpr int32_t kCallsBeforeCancel = 4;  // of a progress function

struct Release {
  void operator()(orvanel_eye* eye) const { orvanel_eye_release(eye); }
  void operator()(orvanel_plane* plane) const { orvanel_plane_release(plane); }
  void operator()(orvanel_reasons* reasons) const { orvanel_reasons_release(reasons); }
};

template <class Handle>
using Owned = std::unique_ptr<Handle, Release>;

template <class Struct>
Struct Sized() {
  Struct made{};
  made.size = sizeof made;
  return made;
}

bool IsText(const char* text) { return text != nullptr && orvanel::IsUtf8(text); }

bool IsSame(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

void RequireReason(const orvanel_error& error) {
  ORVANEL_REQUIRE(IsText(error.code) && IsText(error.text) && *error.text != '\0' && *error.code != '\0');
  for (const char* c = error.code; *c != '\0'; ++c) ORVANEL_REQUIRE((*c >= 'a' && *c <= 'z') || *c == '_');
  for (uint64_t i = 0; i < error.field_count; ++i) {
    ORVANEL_REQUIRE(IsText(error.fields[i].name) && IsText(error.fields[i].text));
  }
}

// A progress function's data: it ends the call after some reports, which rise.
struct Watch {
  int32_t left;
  uint64_t done = 0;
};

int32_t ORVANEL_C_CALL Watched(void* data, uint64_t done, uint64_t total) {
  auto& watch = *static_cast<Watch*>(data);
  ORVANEL_REQUIRE(done == ++watch.done && (total == 0 || done <= total));
  return --watch.left < 0 ? 1 : 0;
}

// What a call receives, and whether the call may succeed as far as the caller knows.
class Host {
 public:
  explicit Host(Input& input) : input_(input) {}

  void Call() {
    mustRefuse_ = false;
    switch (input_.Below(16)) {
      case 0:
      case 1:
        return Create();
      case 2:
        return Parse();
      case 3:
        return Facts();
      case 4:
        return Text();
      case 5:
        return Coefficients();
      case 6:
        return Measure();
      case 7:
        return Adjust();
      case 8:
        return Plane();
      case 9:
        return Object();
      case 10:
        return Image();
      case 11:
        return Chart();
      case 12:
        return Rows();
      case 13:
        return MetricsOfEyes();
      case 14:
        return Refract();
      default:
        return Others();
    }
  }

 private:
  bool Odd() { return input_.Byte() >= 244; }

  // A usual number, or the worst.
  double Number(double low, double high) {
    const int at = input_.Byte();
    return at >= 250 ? input_.Double() : low + (high - low) * at / 249.0;
  }

  // One of a header's constants, or none of them.
  int32_t Choice(int last) {
    constexpr int32_t kOthers[] = {0, -1, INT32_MIN, INT32_MAX};
    const int at = input_.Byte();
    return at >= 252 ? kOthers[at - 252] : 1 + at % last;
  }

  // Never so large a number that is allowed that its computation takes long.
  int32_t Count(int low, int high) {
    constexpr int32_t kOthers[] = {0, -1, INT32_MIN, INT32_MAX};
    const int at = input_.Byte();
    return at >= 252 ? kOthers[at - 252] : low + at % (high - low + 1);
  }

  // Bytes of the input up to a zero.
  std::string Bytes() {
    std::string text;
    for (int i = input_.Byte() % 32; i > 0; --i) text += static_cast<char>(input_.Byte());
    return text.c_str();
  }

  template <std::size_t N>
  const char* OneOf(const char* const (&words)[N]) {
    const int at = input_.Byte();
    if (at >= 250) return nullptr;
    if (at < 235) return words[static_cast<std::size_t>(at) % N];
    texts_.push_back(std::make_unique<std::string>(Bytes()));
    return texts_.back()->c_str();
  }

  // The argument, or null, which the call must refuse.
  template <class T>
  T* OrNull(T* argument) {
    if (!Odd()) return argument;
    mustRefuse_ = true;
    return nullptr;
  }

  template <class Struct>
  Struct WithSize(Struct made) {
    made.size = sizeof made;
    if (Odd()) {
      made.size += static_cast<uint64_t>(input_.Byte()) - 128U;
      mustRefuse_ = mustRefuse_ || made.size != sizeof made;
    }
    return made;
  }

  template <class Handle>
  Handle* Some(const std::array<Owned<Handle>, kHandles>& handles) {
    Handle* const handle = handles[static_cast<std::size_t>(input_.Below(kHandles))].get();
    if (handle == nullptr) mustRefuse_ = true;
    return handle;
  }

  // Keeps a new handle in place of another.
  template <class Handle>
  void Keep(std::array<Owned<Handle>, kHandles>& handles, Handle* handle) {
    ORVANEL_REQUIRE(handle != nullptr);
    handles[static_cast<std::size_t>(input_.Below(kHandles))].reset(handle);
  }

  // A status is one of the header's; a refusal has a reason. True if the call is done.
  bool Done(orvanel_status status) {
    ORVANEL_REQUIRE(status >= ORVANEL_OK && status <= ORVANEL_TRUNCATED);
    ORVANEL_REQUIRE(status != ORVANEL_INTERNAL && status != ORVANEL_NO_MEMORY);
    if (status == ORVANEL_OK) {
      ORVANEL_REQUIRE(!mustRefuse_);
      return true;
    }
    if (mustRefuse_) ORVANEL_REQUIRE(status == ORVANEL_INVALID_ARGUMENT || status == ORVANEL_INVALID_EYE);
    auto error = Sized<orvanel_error>();
    ORVANEL_REQUIRE(orvanel_last_error(&error) == ORVANEL_OK);
    ORVANEL_REQUIRE(error.status == status);
    RequireReason(error);
    return false;
  }

  // The same for a call that fills a struct, which a refused call leaves as it is.
  template <class Struct, class Function>
  bool Fills(Struct& filled, const Function& call) {
    Struct before;
    std::memcpy(&before, &filled, sizeof filled);
    const bool done = Done(call());
    if (!done) ORVANEL_REQUIRE(std::memcmp(&before, &filled, sizeof filled) == 0);
    if (done) ORVANEL_REQUIRE(filled.size == sizeof filled);
    return done;
  }

  // For a call that makes a handle.
  template <class Handle, class Function>
  void Makes(std::array<Owned<Handle>, kHandles>& handles, const Function& call) {
    char mark = 0;
    auto* const before = reinterpret_cast<Handle*>(&mark);
    Handle* made = before;
    Handle** const place = OrNull(&made);
    if (Done(call(place))) {
      Keep(handles, made);
    } else {
      ORVANEL_REQUIRE(made == before);
    }
  }

  orvanel_convention Convention() {
    auto convention = orvanel_osa_convention();
    if (input_.Below(2) == 0) return WithSize(convention);
    convention.unit = Choice(4);
    convention.normalisation = Choice(2);
    convention.indexing = Choice(3);
    convention.y_axis = Choice(2);
    if (convention.unit == ORVANEL_WAVES || Odd()) convention.wavelength_nm = Number(400, 700);
    return WithSize(convention);
  }

  std::vector<double> Modes(std::size_t count) {
    std::vector<double> modes(count);
    for (double& c : modes) c = Number(-0.1, 0.1);
    modes.shrink_to_fit();
    return modes;
  }

  // Describes memory, or what no memory has: then without an address.
  orvanel_array Described(orvanel_array array) {
    if (Odd()) array.dimensions = Count(0, 3);
    if (Odd()) {
      constexpr int64_t kWorst[] = {-1, INT64_MIN, INT64_MAX, int64_t{1} << 40, int64_t{1} << 32};
      array.shape[input_.Below(3)] = kWorst[input_.Below(5)];
      array.data = nullptr;
    }
    return WithSize(array);
  }

  orvanel_array Vector(std::vector<double>& numbers) {
    return Described(orvanel_vector(numbers.data(), static_cast<int64_t>(numbers.size())));
  }

  orvanel_settings Settings() {
    auto settings = Sized<orvanel_settings>();
    ORVANEL_REQUIRE(orvanel_settings_default(&settings) == ORVANEL_OK);
    settings.field_arcmin = Number(0.5, 20);
    settings.samples = Count(2, 17);
    if (input_.Below(2) == 0) return WithSize(settings);
    // White light has many wavelengths, so it comes rarely.
    settings.light = Odd() ? Choice(2) : input_.Below(2) == 0 ? ORVANEL_ONE_WAVELENGTH : ORVANEL_SPECTRUM;
    settings.view = Choice(2);
    settings.wavelength_nm = Number(400, 700);
    settings.origin = Choice(3);
    spectrum_ = {Number(400, 700), Number(400, 700)};
    weights_ = {Number(0, 1), Number(0, 1)};
    settings.wavelengths_nm = Odd() ? nullptr : spectrum_.data();
    settings.weights = Odd() ? nullptr : weights_.data();
    settings.lines = static_cast<uint64_t>(1 + input_.Below(2));
    if (Odd()) settings.lines = input_.Below(2) == 0 ? 0 : UINT64_MAX;
    settings.stiles_crawford_rho = Number(0, 0.1);
    settings.stiles_crawford_x_mm = Number(-0.5, 0.5);
    settings.stiles_crawford_y_mm = Number(-0.5, 0.5);
    settings.achromatic_axis_x_mm = Number(-0.5, 0.5);
    settings.achromatic_axis_y_mm = Number(-0.5, 0.5);
    return WithSize(settings);
  }

  orvanel_metrics_request Metrics() {
    constexpr const char* kNames[] = {"VSX",       "RMSw",    "vsotf,NS", "SRX", "",
                                      "VSX,,RMSw", "VSX,VSX", " D50",     "VSy", "PFWc"};
    auto request = Sized<orvanel_metrics_request>();
    ORVANEL_REQUIRE(orvanel_metrics_default(&request) == ORVANEL_OK);
    request.metrics = OneOf(kNames);
    if (request.metrics == nullptr) mustRefuse_ = true;
    request.settings = Settings();
    if (input_.Below(2) == 0) return WithSize(request);
    request.origin = Choice(4);
    request.reference = Choice(2);
    request.gaussian_sd_arcmin = Number(0.2, 3);
    if (input_.Below(2) == 0) {
      frequencies_ = {Number(0, 5), Number(5, 20), Number(20, 60)};
      sensitivities_ = {Number(0, 100), Number(0, 200), Number(0, 1)};
      request.csf_frequencies = Odd() ? nullptr : frequencies_.data();
      request.csf_sensitivities = Odd() ? nullptr : sensitivities_.data();
      request.csf_points = static_cast<uint64_t>(input_.Below(4));
      if (Odd()) request.csf_points = UINT64_MAX;
    }
    return WithSize(request);
  }

  // A progress function that ends every long call.
  Watch Watching() { return {input_.Below(2) == 0 ? kCallsBeforeCancel : input_.Below(kCallsBeforeCancel)}; }

  void Create() {
    auto input = Sized<orvanel_eye_input>();
    std::vector<double> modes = Modes(static_cast<std::size_t>(Odd() ? input_.Byte() : input_.Below(16)));
    input.coefficients = Vector(modes);
    input.convention = Convention();
    input.pupil_mm = Number(1, 4);
    input.reference_nm = input_.Below(2) == 0 ? 0.0 : Number(400, 700);
    input.laterality = Choice(3);
    const std::string name = Bytes();
    input.name = input_.Below(2) == 0 ? nullptr : name.c_str();
    if (input.name != nullptr && !orvanel::IsUtf8(name)) mustRefuse_ = true;
    input = WithSize(input);
    const auto* const given = OrNull(&input);
    Makes(eyes_, [&](orvanel_eye** eye) { return orvanel_eye_create(given, eye); });
  }

  void Parse() {
    std::string text =
        R"({"pupil_diameter_mm": 3, "eye": "OD", "convention": {"unit": "um", "normalisation": "orthonormal", )"
        R"("order": "osa", "y_axis": "up"}, "coefficients": [0, 0, 0, 0.1, 0.2, 0.05]})";
    const std::size_t at = static_cast<std::size_t>(input_.Byte()) % text.size();
    text.replace(at, static_cast<std::size_t>(input_.Below(8)), Bytes());
    const std::vector<char> exact(text.begin(), text.end());  // a byte behind it is found
    const uint64_t length = Odd() ? UINT64_MAX : exact.size();
    const char* const given = OrNull(exact.data());
    Makes(eyes_, [&](orvanel_eye** eye) { return orvanel_eye_parse(given, length, eye); });
  }

  void Facts() {
    auto facts = WithSize(orvanel_eye_facts{});
    const orvanel_eye* const eye = Some(eyes_);
    if (!Fills(facts, [&] { return orvanel_eye_get_facts(eye, &facts); })) return;
    ORVANEL_REQUIRE(std::isfinite(facts.pupil_mm) && facts.pupil_mm > 0.0 && facts.reference_nm >= 0.0);
    ORVANEL_REQUIRE(facts.laterality >= ORVANEL_OD && facts.laterality <= ORVANEL_LATERALITY_NOT_STATED);
    ORVANEL_REQUIRE(IsText(facts.name) && IsText(facts.warnings));
  }

  std::vector<double> CoefficientsOf(const orvanel_eye* eye) {
    auto facts = Sized<orvanel_eye_facts>();
    ORVANEL_REQUIRE(orvanel_eye_get_facts(eye, &facts) == ORVANEL_OK);
    uint64_t count = 0;
    ORVANEL_REQUIRE(orvanel_eye_coefficients(eye, &facts.convention, nullptr, 0, &count) == ORVANEL_OK);
    std::vector<double> numbers(count);
    ORVANEL_REQUIRE(orvanel_eye_coefficients(eye, &facts.convention, numbers.data(), count, &count) == ORVANEL_OK);
    return numbers;
  }

  // A text is read back as the same eye.
  void Text() {
    const orvanel_eye* const eye = Some(eyes_);
    uint64_t length = 0;
    if (!Done(orvanel_eye_text(eye, nullptr, 0, OrNull(&length)))) return;
    std::vector<char> text(length + 1);
    if (input_.Below(2) == 0) {
      ORVANEL_REQUIRE(orvanel_eye_text(eye, text.data(), length, &length) == ORVANEL_TRUNCATED && text[0] == '\0');
    }
    ORVANEL_REQUIRE(orvanel_eye_text(eye, text.data(), text.size(), &length) == ORVANEL_OK);
    ORVANEL_REQUIRE(std::strlen(text.data()) == length && IsText(text.data()));
    orvanel_eye* read = nullptr;
    ORVANEL_REQUIRE(orvanel_eye_parse(text.data(), length, &read) == ORVANEL_OK);
    const Owned<orvanel_eye> owned(read);
    ORVANEL_REQUIRE(CoefficientsOf(read) == CoefficientsOf(eye));
  }

  void Coefficients() {
    const orvanel_eye* const eye = Some(eyes_);
    const orvanel_convention convention = Convention();
    const auto* const wanted = OrNull(&convention);
    uint64_t count = 0;
    if (!Done(orvanel_eye_coefficients(eye, wanted, nullptr, 0, OrNull(&count)))) return;
    std::vector<double> numbers(count);
    ORVANEL_REQUIRE(orvanel_eye_coefficients(eye, wanted, numbers.data(), count, &count) == ORVANEL_OK);
    for (const double c : numbers) ORVANEL_REQUIRE(std::isfinite(c));
  }

  void Measure() {
    const orvanel_eye* const eye = Some(eyes_);
    if (input_.Below(2) == 0) {
      double rms = -1.0;
      const int32_t first = Count(0, 20), last = Count(0, 20);
      const bool done = Done(orvanel_eye_rms(eye, first, last, OrNull(&rms)));
      ORVANEL_REQUIRE(done ? std::isfinite(rms) && rms >= 0.0 : rms == -1.0);
      return;
    }
    auto refraction = WithSize(orvanel_refraction{});
    const int32_t method = Choice(2);
    if (!Fills(refraction, [&] { return orvanel_eye_refraction(eye, method, &refraction); })) return;
    ORVANEL_REQUIRE(refraction.cylinder <= 0.0 && refraction.axis >= 0.0 && refraction.axis <= 180.0);
    ORVANEL_REQUIRE(std::isfinite(refraction.sphere) && std::isfinite(refraction.m));
  }

  void Adjust() {
    auto adjustments = Sized<orvanel_adjustments>();
    for (double* const number :
         {&adjustments.sphere, &adjustments.cylinder, &adjustments.lens_sphere, &adjustments.lens_cylinder}) {
      if (input_.Below(2) == 0) *number = Number(-3, 3);
    }
    adjustments.axis = Number(0, 180);
    adjustments.lens_axis = Number(0, 180);
    if (input_.Below(2) == 0) adjustments.lens_vertex_mm = Number(0, 30);
    if (input_.Below(2) == 0) adjustments.pupil_mm = Number(1, 4);
    adjustments.extrapolate = input_.Below(2);
    if (input_.Below(2) == 0) adjustments.laterality = Choice(3);
    if (input_.Below(2) == 0) adjustments.highest_order = Count(1, 20);
    adjustments = WithSize(adjustments);
    const orvanel_eye* const eye = Some(eyes_);
    const auto* const given = OrNull(&adjustments);
    Makes(eyes_, [&](orvanel_eye** adjusted) { return orvanel_eye_adjusted(eye, given, adjusted); });
  }

  void Plane() {
    const orvanel_eye* const eye = Some(eyes_);
    const orvanel_settings settings = Settings();
    const auto* const given = OrNull(&settings);
    switch (input_.Below(4)) {
      case 0:
        return Makes(planes_, [&](orvanel_plane** plane) { return orvanel_mtf(eye, given, plane); });
      case 1:
        return Makes(planes_, [&](orvanel_plane** plane) { return orvanel_wavefront(eye, given, plane); });
      default:
        return Makes(planes_, [&](orvanel_plane** plane) { return orvanel_psf(eye, given, plane); });
    }
  }

  void Object() {
    const int64_t rows = 1 + input_.Below(8), columns = 1 + input_.Below(8);
    std::vector<double> samples(static_cast<std::size_t>(rows * columns));
    for (double& v : samples) v = Number(0, 1);
    orvanel_array array = orvanel_matrix(samples.data(), rows, columns);
    if (input_.Below(4) == 0) {  // from the last to the first
      array.data += rows * columns - 1;
      array.strides[0] = -array.strides[0];
      array.strides[1] = -array.strides[1];
    }
    array = Described(array);
    const double pixel = Number(0.2, 4), surround = Number(0, 1);
    const auto* const given = OrNull(&array);
    Makes(planes_, [&](orvanel_plane** plane) { return orvanel_object(given, pixel, surround, plane); });
  }

  // What is not an object is refused.
  void Image() {
    const orvanel_eye* const eye = Some(eyes_);
    const orvanel_settings settings = Settings();
    const orvanel_plane* const object = Some(planes_);
    if (object != nullptr) {
      auto facts = Sized<orvanel_plane_facts>();
      ORVANEL_REQUIRE(orvanel_plane_get_facts(object, &facts) == ORVANEL_OK);
      if (facts.kind != ORVANEL_OBJECT) mustRefuse_ = true;
      if (facts.kind == ORVANEL_OBJECT && std::max(facts.samples.shape[0], facts.samples.shape[1]) > kLargestObject)
        return;
    }
    Watch watch = Watching();
    Makes(planes_,
          [&](orvanel_plane** plane) { return orvanel_image(eye, &settings, object, Watched, &watch, plane); });
  }

  void Chart() {
    constexpr const char* kSets[] = {"sloan", "hotv", "landolt4", "landolt8", "e", "", "SLOAN"};
    constexpr const char* kNames[] = {"C D H", "C D H / K N", "up", "/", " ", "C/"};
    auto request = Sized<orvanel_chart_request>();
    ORVANEL_REQUIRE(orvanel_chart_default(&request) == ORVANEL_OK);
    request.content = Choice(6);
    std::vector<double> logmar(static_cast<std::size_t>(input_.Below(4)));
    for (double& size : logmar) size = Number(0.5, 1);
    request.logmar = logmar.data();
    request.lines = Odd() ? UINT64_MAX : logmar.size();
    request.optotypes = OneOf(kSets);
    request.per_line = Count(1, 5);
    request.seed = input_.Byte();
    if (input_.Below(2) == 0) request.names = OneOf(kNames);
    request.contrast_kind = Choice(2);
    request.contrast = Number(0, 1);
    request.polarity = Choice(2);
    if (input_.Below(2) == 0) request.crowding_gap = Number(-1, 2);
    request.frequency = Number(0, 5);
    request.bar_degrees = Number(-180, 180);
    request.phase_degrees = Number(-180, 180);
    request.diameter_arcmin = Number(0, 100);
    request.spacing_arcmin = Number(0, 200);
    request.count = Count(1, 12);
    // Charts of many pixels are drawn slowly, and are nothing else.
    request.pixels_per_degree = Number(1, 24);
    if (request.pixels_per_degree > 24.0 && request.pixels_per_degree < 1e6) request.pixels_per_degree = 1.0;
    if (input_.Below(2) == 0) {
      request.width_degrees = Number(0, 2);
      request.height_degrees = Number(0, 2);
    }
    request = WithSize(request);
    const auto* const given = OrNull(&request);
    Makes(planes_, [&](orvanel_plane** plane) { return orvanel_chart(given, plane); });
  }

  // Arrays of results, with a mark in each element.
  struct Results {
    std::vector<double> values, errors, gradients, origins;
    std::vector<int32_t> notes, statuses;
    orvanel_metrics_output output{};

    Results(std::size_t eyes, std::size_t metrics, std::size_t coefficients)
        : values(eyes * metrics, kMark),
          errors(eyes * metrics, kMark),
          gradients(eyes * metrics * coefficients, kMark),
          origins(eyes * 2, kMark),
          notes(eyes * metrics, kIntegerMark),
          statuses(eyes, kIntegerMark) {
      const auto n = static_cast<int64_t>(eyes), m = static_cast<int64_t>(metrics),
                 k = static_cast<int64_t>(coefficients);
      output.size = sizeof output;
      for (orvanel_array* const array : {&output.values, &output.errors, &output.gradients, &output.origins}) {
        array->size = sizeof *array;
      }
      output.values = orvanel_matrix(values.data(), n, m);
      output.errors = orvanel_matrix(errors.data(), n, m);
      output.origins = orvanel_matrix(origins.data(), n, 2);
      if (coefficients > 0) {
        constexpr auto kBytes = static_cast<int64_t>(sizeof(double));
        output.gradients = {
            sizeof(orvanel_array), gradients.data(), 3, 0, {n, m, k}, {m * k * kBytes, k * kBytes, kBytes}, nullptr};
      }
      output.notes = notes.data();
      output.statuses = statuses.data();
    }

    bool IsUntouched() const {
      for (const auto* const numbers : {&values, &errors, &gradients, &origins}) {
        for (const double v : *numbers) {
          if (v != kMark) return false;
        }
      }
      for (const auto* const numbers : {&notes, &statuses}) {
        for (const int32_t v : *numbers) {
          if (v != kIntegerMark) return false;
        }
      }
      return true;
    }

    bool IsSameAs(const Results& other) const {
      for (std::size_t i = 0; i < values.size(); ++i) {
        if (!IsSame(values[i], other.values[i]) || !IsSame(errors[i], other.errors[i])) return false;
      }
      for (std::size_t i = 0; i < gradients.size(); ++i) {
        if (!IsSame(gradients[i], other.gradients[i])) return false;
      }
      return notes == other.notes && statuses == other.statuses;
    }

    static constexpr double kMark = -12345.678;
    static constexpr int32_t kIntegerMark = -77;
  };

  // Checks a batch against its results; `call` runs it with a number of threads.
  template <class Function>
  void Batch(const orvanel_metrics_request& request, std::size_t eyes, std::size_t coefficients, const Function& call) {
    uint64_t metrics = 0;
    if (request.metrics != nullptr && orvanel_metrics_count(request.metrics, &metrics) != ORVANEL_OK) metrics = 1;
    Results results(eyes, metrics, input_.Below(4) == 0 ? coefficients : 0);
    if (Odd()) results.output.values = Described(results.output.values);
    if (Odd()) results.output.notes = nullptr;
    constexpr uint32_t kThreads[] = {1, 2, 3, 0, UINT32_MAX};
    const uint32_t threads = Odd() ? kThreads[input_.Below(5)] : 1;
    Watch watch = Watching();
    char mark = 0;
    auto* const before = reinterpret_cast<orvanel_reasons*>(&mark);
    orvanel_reasons* reasons = before;
    const orvanel_status status = call(request, threads, Watched, &watch, &results.output, &reasons);
    const bool ran = status == ORVANEL_OK || status == ORVANEL_ROWS_REFUSED;
    Done(status);
    if (!ran) {
      ORVANEL_REQUIRE(reasons == before);
      if (status != ORVANEL_CANCELLED) ORVANEL_REQUIRE(results.IsUntouched());
      return;
    }
    const Owned<orvanel_reasons> owned(reasons);
    bool refused = false;
    for (std::size_t row = 0; row < eyes; ++row) {
      auto error = Sized<orvanel_error>();
      ORVANEL_REQUIRE(orvanel_reason_of_row(reasons, row, &error) == ORVANEL_OK);
      ORVANEL_REQUIRE(error.status == results.statuses[row]);
      if (error.status != ORVANEL_OK) RequireReason(error);
      refused = refused || error.status != ORVANEL_OK;
      for (std::size_t m = 0; m < metrics; ++m) {
        const double value = results.values[row * metrics + m];
        if (results.output.values.data != nullptr) ORVANEL_REQUIRE(value != Results::kMark && !std::isinf(value));
        if (error.status != ORVANEL_OK && results.output.values.data != nullptr) ORVANEL_REQUIRE(std::isnan(value));
      }
    }
    ORVANEL_REQUIRE(refused == (status == ORVANEL_ROWS_REFUSED));
    auto error = Sized<orvanel_error>();
    ORVANEL_REQUIRE(orvanel_reason_of_row(reasons, eyes, &error) == ORVANEL_INVALID_ARGUMENT);
    if (!Odd() || results.output.notes == nullptr || results.output.values.data == nullptr) return;
    Results again(eyes, metrics, results.output.gradients.data != nullptr ? coefficients : 0);
    orvanel_reasons* const none = nullptr;
    ORVANEL_REQUIRE(call(request, threads == 1 ? 2 : 1, nullptr, none, &again.output, nullptr) == status);
    ORVANEL_REQUIRE(again.IsSameAs(results));
  }

  void Rows() {
    auto eyes = Sized<orvanel_eyes>();
    const auto rows = static_cast<std::size_t>(input_.Below(4));
    const auto width = static_cast<std::size_t>(Odd() ? input_.Byte() : input_.Below(12));
    std::vector<double> modes = Modes(rows * width), pupils(rows);
    for (double& pupil : pupils) pupil = Number(1, 4);
    eyes.coefficients =
        Described(orvanel_matrix(modes.data(), static_cast<int64_t>(rows), static_cast<int64_t>(width)));
    eyes.pupil_mm = Vector(pupils);
    if (input_.Below(2) == 0) eyes.pupil_mm.strides[0] = 0;
    eyes.convention = Convention();
    eyes.laterality = Choice(3);
    eyes.reference_nm = input_.Below(2) == 0 ? 0.0 : Number(400, 700);
    eyes = WithSize(eyes);
    const auto* const given = OrNull(&eyes);
    Batch(Metrics(), rows, width,
          [&](const orvanel_metrics_request& request, uint32_t threads, orvanel_progress progress, void* data,
              const orvanel_metrics_output* output, orvanel_reasons** reasons) {
            return orvanel_metrics_of_rows(&request, given, threads, progress, data, output, reasons);
          });
  }

  void MetricsOfEyes() {
    std::vector<const orvanel_eye*> eyes;
    for (int i = input_.Below(3); i > 0; --i) eyes.push_back(Some(eyes_));
    const orvanel_eye* const* const given = Odd() ? nullptr : eyes.data();
    if (given == nullptr && !eyes.empty()) mustRefuse_ = true;
    Batch(Metrics(), eyes.size(), 10,
          [&](const orvanel_metrics_request& request, uint32_t threads, orvanel_progress progress, void* data,
              const orvanel_metrics_output* output, orvanel_reasons** reasons) {
            return orvanel_metrics_of_eyes(&request, given, eyes.size(), threads, progress, data, output, reasons);
          });
  }

  void Refract() {
    const orvanel_eye* const eye = Some(eyes_);
    const orvanel_metrics_request metric = Metrics();
    auto request = Sized<orvanel_correction_request>();
    ORVANEL_REQUIRE(orvanel_correction_default(&request) == ORVANEL_OK);
    if (input_.Below(2) == 0) {
      request.step = Number(0.01, 1);
      request.axis_step = Number(1, 45);
      request.vertex_mm = Number(0, 30);
      request.sphere_only = input_.Below(2);
      request.evaluations = Count(1, 8);
    }
    request = WithSize(request);
    auto correction = WithSize(orvanel_correction{});
    Watch watch = Watching();
    if (!Fills(correction, [&] { return orvanel_refract(eye, &metric, &request, Watched, &watch, &correction); }))
      return;
    ORVANEL_REQUIRE(correction.none.sphere == 0.0 && correction.best.cylinder <= 0.0);
  }

  // Facts of planes, lists of metrics, the classic model, and a release.
  void Others() {
    switch (input_.Below(6)) {
      case 0: {
        auto facts = WithSize(orvanel_plane_facts{});
        const orvanel_plane* const plane = Some(planes_);
        if (!Fills(facts, [&] { return orvanel_plane_get_facts(plane, &facts); })) return;
        ORVANEL_REQUIRE(facts.samples.owner == plane && facts.samples.dimensions == 2 && facts.samples.data != nullptr);
        ORVANEL_REQUIRE(IsText(facts.warnings) && IsText(facts.notes) && IsText(facts.axis_unit));
        const int64_t last = facts.samples.shape[0] * facts.samples.shape[1] - 1;
        ORVANEL_REQUIRE(last >= 0 && !std::isinf(facts.samples.data[last]) && std::isfinite(facts.x_first));
        return;
      }
      case 1: {
        auto metric = WithSize(orvanel_metric{});
        const uint64_t index = Odd() ? UINT64_MAX : input_.Byte() % 64U;
        if (index >= orvanel_metric_count()) mustRefuse_ = true;
        if (!Fills(metric, [&] { return orvanel_metric_at(index, &metric); })) return;
        ORVANEL_REQUIRE(IsText(metric.name) && IsText(metric.unit) && IsText(metric.source));
        return;
      }
      case 2: {
        const std::string names = Bytes();
        uint64_t count = 0;
        if (!orvanel::IsUtf8(names)) mustRefuse_ = true;
        if (Done(orvanel_metrics_count(names.c_str(), OrNull(&count)))) ORVANEL_REQUIRE(count > 0);
        return;
      }
      case 3: {
        const orvanel_eye* const eye = Some(eyes_);
        const int32_t what = Choice(8), gap = Choice(4);
        const double acuity = Number(0.1, 2);
        return Makes(planes_, [&](orvanel_plane** plane) { return orvanel_classic(eye, what, acuity, gap, plane); });
      }
      case 4: {
        auto error = WithSize(orvanel_error{});
        const orvanel_status status = orvanel_last_error(OrNull(&error));
        ORVANEL_REQUIRE((status == ORVANEL_OK) == !mustRefuse_);
        return;
      }
      default:
        eyes_[static_cast<std::size_t>(input_.Below(kHandles))].reset();
        planes_[static_cast<std::size_t>(input_.Below(kHandles))].reset();
    }
  }

  Input& input_;
  bool mustRefuse_ = false;  // by the arguments that the host has chosen
  std::array<Owned<orvanel_eye>, kHandles> eyes_;
  std::array<Owned<orvanel_plane>, kHandles> planes_;
  std::vector<std::unique_ptr<std::string>> texts_;
  std::vector<double> spectrum_, weights_, frequencies_, sensitivities_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  Host host(input);
  for (int i = 0; i < kMaxCalls && !input.empty(); ++i) host.Call();
  return 0;
}
