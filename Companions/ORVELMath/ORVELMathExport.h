#pragma once

/// \file
/// \brief Marks what ORVELMath gives to others; everything else stays inside the library.

#define ORVELMATH_EXPORT __attribute__((visibility("default")))
