#pragma once

/// \file
/// \brief A place in the source, as failures and log records name it.

/// \brief This statement: the signature of its function, its file and its line.
#define ORVEL_HERE ORVEL_HERE_IN(__PRETTY_FUNCTION__)

/// \brief ORVEL_HERE with the signature spelled out, for a function that is not a member: g++ leaves the
/// namespaces out of its parameters.
#define ORVEL_HERE_IN(signature)                                                                             \
  ::orvel::SourceLocation                                                                                    \
  {                                                                                                          \
    signature, __FILE__, __LINE__                                                                            \
  }

namespace orvel
{

/// \brief A place in the source. \see ORVEL_HERE
struct SourceLocation
{
  const char* function; ///< full signature
  const char* file;
  unsigned int line;
};

} // namespace orvel
