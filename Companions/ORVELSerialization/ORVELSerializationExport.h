#pragma once

/// \file
/// \brief Marks what ORVELSerialization exports.

/// Visible to other libraries. On ELF the mark is the same for the library itself and for its users.
#define ORVELSERIALIZATION_EXPORT __attribute__((visibility("default")))
