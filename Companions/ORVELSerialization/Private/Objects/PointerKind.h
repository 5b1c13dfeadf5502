#pragma once

namespace orvel::details
{

/// What a pointer in an archive leads to.
enum class PointerKind
{
  null,
  reference, ///< an object that came before
  object     ///< a new object, whose content follows
};

} // namespace orvel::details
