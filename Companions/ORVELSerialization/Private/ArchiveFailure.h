#pragma once

// How the parts of an archive fail.

#include <functional>
#include <string>

#include <ORVELSerialization/ORVELSerializationLogMessages.h>

namespace orvel::details
{

/// A failure of an archive's part on its way to the operation that was called, which raises it in its own
/// name.
class ArchiveFailure
{
public:
  /// \param arguments of the message, behind the archive's name and the place
  template <class... Arguments>
  explicit ArchiveFailure(eORVELSerializationMessage::domain message, Arguments... arguments)
    : _raise([=](const SourceLocation& here, const std::string& name, const std::string& place)
             { orvel::raise(here, message, name, place, arguments...); })
  {
  }

  /// Raises the failure. \param name of the archive
  void raise(const SourceLocation& here, const std::string& name, const std::string& place) const
  {
    _raise(here, name, place);
  }

private:
  std::function<void(const SourceLocation&, const std::string&, const std::string&)> _raise;
};

} // namespace orvel::details
