// The parts that kernels are made of, compiled as the tests are: what has no table is tested through these. That all
// tables have their bits is for variant_test.cpp to show.
#ifndef ORVANEL_TESTS_OPTICS_KERNELS_UNDER_TEST_H
#define ORVANEL_TESTS_OPTICS_KERNELS_UNDER_TEST_H

#define ORVANEL_VARIANT under_test
// Whole kernels go unused here.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#include "optics/kernels/modulation.h"
#include "optics/kernels/pupil.h"
#pragma GCC diagnostic pop

#endif  // ORVANEL_TESTS_OPTICS_KERNELS_UNDER_TEST_H
