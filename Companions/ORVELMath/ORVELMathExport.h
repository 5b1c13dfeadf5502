#pragma once

/// \file
/// \brief Marks what ORVELMath exports.

/// Visible to other libraries. On ELF the mark is the same for the library itself and for its users.
#define ORVELMATH_EXPORT __attribute__((visibility("default")))
