#pragma once

/// \file
/// \brief Compares the signatures that failures name, whatever compiler has spelt them.

#include <string>

namespace orvel::test
{

/// \brief Return a signature without blanks and without the scopes that only one compiler spells.
inline std::string normalisedSignature(std::string signature)
{
  for (const std::string scope : {" ", "orvel::"})
    for (std::size_t place = 0; (place = signature.find(scope, place)) != std::string::npos;)
      signature.erase(place, scope.size());
  for (const std::string scope :
       {"KernelXY::", "KernelXYZ::", "StructuringElementXY::", "StructuringElementXYZ::"})
    for (const std::string type : {"OffsetType", "ValueType"})
      for (std::size_t place = 0; (place = signature.find(scope + type, place)) != std::string::npos;)
        signature.erase(place, scope.size());
  return signature;
}

} // namespace orvel::test
