// Defines vectors as wide as the registers, and the operations on them that the compiler's vector types do not have.
// Includes nothing of the C++ library and defines nothing with external linkage: the code compiled here may need
// instructions that only this variant may use.
#ifndef ORVANEL_OPTICS_KERNELS_VECTORS_H
#define ORVANEL_OPTICS_KERNELS_VECTORS_H

#if defined(__SSE2__)
#include <immintrin.h>
#endif

// For lambdas and constructors, for other members, and for functions.
#define ORVANEL_INLINED __attribute__((always_inline))
#define ORVANEL_INLINE_MEMBER inline ORVANEL_INLINED
#define ORVANEL_INLINE static ORVANEL_INLINE_MEMBER
#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || __has_feature(coverage_sanitizer)
#define ORVANEL_INSTRUMENTED
#endif
#endif
#if defined(ORVANEL_INSTRUMENTED)
#define ORVANEL_UNROLL  // every copy of a loop would be instrumented, at minutes of compiling
#elif defined(__clang__)
#define ORVANEL_UNROLL _Pragma("clang loop unroll(full)")
#else
#define ORVANEL_UNROLL _Pragma("GCC unroll 16")
#endif

namespace orvanel::ORVANEL_VARIANT {
namespace {

#if defined(__AVX512F__)
constexpr int kWidth = 8;
#elif defined(__AVX2__)
constexpr int kWidth = 4;
#else
constexpr int kWidth = 2;
#endif

using V = double __attribute__((vector_size(8 * kWidth)));
using Mask = long long __attribute__((vector_size(8 * kWidth)));  // -1 in lanes where a condition holds, else 0
// Attributes of an alias follow its name: clang ignores an alignment that follows the type. It would then access hosts'
// buffers with instructions that fault if these are not aligned.
using UnalignedV [[gnu::vector_size(8 * kWidth), gnu::aligned(1), gnu::may_alias]] = double;
static_assert(alignof(UnalignedV) == 1 && sizeof(UnalignedV) == sizeof(V));

ORVANEL_INLINE V Load(const double* from) { return *reinterpret_cast<const UnalignedV*>(from); }
ORVANEL_INLINE void Store(double* to, V v) { *reinterpret_cast<UnalignedV*>(to) = v; }
ORVANEL_INLINE V Splat(double a) { return a - V{}; }
ORVANEL_INLINE V Select(Mask condition, V yes, V no) { return condition ? yes : no; }
ORVANEL_INLINE V Bits(Mask m) { return reinterpret_cast<V>(m); }
ORVANEL_INLINE Mask Bits(V v) { return reinterpret_cast<Mask>(v); }

// base, base + 1, ...
ORVANEL_INLINE V Ramp(double base) {
  V ramp{};
  for (int l = 0; l < kWidth; ++l) ramp[l] = base + l;
  return ramp;
}

ORVANEL_INLINE V Sqrt(V v) {
#if defined(__AVX512F__)
  return _mm512_maskz_sqrt_pd(0xff, v);
#elif defined(__AVX2__)
  return _mm256_sqrt_pd(v);
#elif defined(__SSE2__)
  return _mm_sqrt_pd(v);
#else
  for (int l = 0; l < kWidth; ++l) v[l] = __builtin_sqrt(v[l]);
  return v;
#endif
}

ORVANEL_INLINE bool Any(Mask m) {
#if defined(__AVX512F__)
  return _mm512_test_epi64_mask(reinterpret_cast<__m512i>(m), reinterpret_cast<__m512i>(m)) != 0;
#elif defined(__AVX2__)
  return _mm256_movemask_pd(Bits(m)) != 0;
#elif defined(__SSE2__)
  return _mm_movemask_pd(Bits(m)) != 0;
#else
  return (m[0] | m[1]) != 0;
#endif
}

// The lanes in reverse order.
ORVANEL_INLINE V Reverse(V v) {
#if defined(__AVX512F__)
  return __builtin_shufflevector(v, v, 7, 6, 5, 4, 3, 2, 1, 0);
#elif defined(__AVX2__)
  return __builtin_shufflevector(v, v, 3, 2, 1, 0);
#else
  return __builtin_shufflevector(v, v, 1, 0);
#endif
}

// Lane 0 of first, and the lanes of others in reverse order except for their lane 0.
ORVANEL_INLINE V ReverseFrom(V first, V others) {
#if defined(__AVX512F__)
  return __builtin_shufflevector(first, others, 0, 15, 14, 13, 12, 11, 10, 9);
#elif defined(__AVX2__)
  return __builtin_shufflevector(first, others, 0, 7, 6, 5);
#else
  return __builtin_shufflevector(first, others, 0, 3);
#endif
}

// v[c] becomes the c-th samples of kWidth rows; at(l) points to those of row l. Halves of rows meet while they are
// loaded, which leaves the fewest permutations for the one port that does them.
template <class At>
ORVANEL_INLINE void LoadTransposed(At at, V* v) {
#if defined(__AVX512F__)
  using Half = double __attribute__((vector_size(32)));
  using UnalignedHalf [[gnu::vector_size(32), gnu::aligned(1), gnu::may_alias]] = double;
  static_assert(alignof(UnalignedHalf) == 1);
  ORVANEL_UNROLL for (int side = 0; side < 8; side += 4) {
    V a[4];
    ORVANEL_UNROLL for (int i = 0; i < 4; ++i) {
      const Half low = *reinterpret_cast<const UnalignedHalf*>(at(i) + side);
      const Half high = *reinterpret_cast<const UnalignedHalf*>(at(i + 4) + side);
      a[i] = __builtin_shufflevector(low, high, 0, 1, 2, 3, 4, 5, 6, 7);
    }
    const V even01 = __builtin_shufflevector(a[0], a[1], 0, 8, 2, 10, 4, 12, 6, 14);
    const V odd01 = __builtin_shufflevector(a[0], a[1], 1, 9, 3, 11, 5, 13, 7, 15);
    const V even23 = __builtin_shufflevector(a[2], a[3], 0, 8, 2, 10, 4, 12, 6, 14);
    const V odd23 = __builtin_shufflevector(a[2], a[3], 1, 9, 3, 11, 5, 13, 7, 15);
    v[side] = __builtin_shufflevector(even01, even23, 0, 1, 8, 9, 4, 5, 12, 13);
    v[side + 1] = __builtin_shufflevector(odd01, odd23, 0, 1, 8, 9, 4, 5, 12, 13);
    v[side + 2] = __builtin_shufflevector(even01, even23, 2, 3, 10, 11, 6, 7, 14, 15);
    v[side + 3] = __builtin_shufflevector(odd01, odd23, 2, 3, 10, 11, 6, 7, 14, 15);
  }
#elif defined(__AVX2__)
  using Half = double __attribute__((vector_size(16)));
  using UnalignedHalf [[gnu::vector_size(16), gnu::aligned(1), gnu::may_alias]] = double;
  static_assert(alignof(UnalignedHalf) == 1);
  ORVANEL_UNROLL for (int side = 0; side < 4; side += 2) {
    V a[2];
    ORVANEL_UNROLL for (int i = 0; i < 2; ++i) {
      const Half low = *reinterpret_cast<const UnalignedHalf*>(at(i) + side);
      const Half high = *reinterpret_cast<const UnalignedHalf*>(at(i + 2) + side);
      a[i] = __builtin_shufflevector(low, high, 0, 1, 2, 3);
    }
    v[side] = __builtin_shufflevector(a[0], a[1], 0, 4, 2, 6);
    v[side + 1] = __builtin_shufflevector(a[0], a[1], 1, 5, 3, 7);
  }
#else
  const V a = Load(at(0));
  const V b = Load(at(1));
  v[0] = __builtin_shufflevector(a, b, 0, 2);
  v[1] = __builtin_shufflevector(a, b, 1, 3);
#endif
}

// Copied part by part: GCC copies the whole through memory otherwise, at many times the cost.
struct Complex {
  Complex() = default;
  ORVANEL_INLINED Complex(V a, V b) : re(a), im(b) {}
  ORVANEL_INLINED Complex(const Complex& other) : re(other.re), im(other.im) {}
  ORVANEL_INLINED Complex& operator=(const Complex& other) {
    re = other.re;
    im = other.im;
    return *this;
  }

  V re;
  V im;
};

ORVANEL_INLINE Complex operator+(Complex a, Complex b) { return {a.re + b.re, a.im + b.im}; }
ORVANEL_INLINE Complex operator-(Complex a, Complex b) { return {a.re - b.re, a.im - b.im}; }
ORVANEL_INLINE Complex Times(Complex a, V c, V s) { return {a.re * c - a.im * s, a.re * s + a.im * c}; }
ORVANEL_INLINE Complex TimesI(Complex a) { return {-a.im, a.re}; }

ORVANEL_INLINE const double* Samples(const V& v) { return reinterpret_cast<const double*>(&v); }

// Rows become columns: what lane l of kWidth vectors has comes to x[place(l)].
template <class Place>
ORVANEL_INLINE void Transpose(const Complex* block, Complex* x, Place place) {
  V a[kWidth];
  LoadTransposed([&](int l) ORVANEL_INLINED { return Samples(block[l].re); }, a);
  ORVANEL_UNROLL for (int l = 0; l < kWidth; ++l) x[place(l)].re = a[l];
  LoadTransposed([&](int l) ORVANEL_INLINED { return Samples(block[l].im); }, a);
  ORVANEL_UNROLL for (int l = 0; l < kWidth; ++l) x[place(l)].im = a[l];
}

}  // namespace
}  // namespace orvanel::ORVANEL_VARIANT

#endif  // ORVANEL_OPTICS_KERNELS_VECTORS_H
