#pragma once

// Opening what an archive writes to or reads from, with the failures of an archive.

#include <iosfwd>
#include <memory>

#include <boost/filesystem/path.hpp>

#include <ORVELSerialization/Private/ByteSink.h>
#include <ORVELSerialization/Private/ByteSource.h>

namespace orvel::details
{

/// Name of an archive that is no file.
constexpr const char* streamName = "stream";

/// \throw ORVELSerializationException with the path and the system's reason
std::unique_ptr<OutputTarget> openFileTarget(const boost::filesystem::path& path);

/// \throw ORVELSerializationException with the path and the system's reason
std::unique_ptr<InputOrigin> openFileOrigin(const boost::filesystem::path& path);

/// \throw ORVELSerializationException if the stream is in a failed state
std::unique_ptr<InputOrigin> openStreamOrigin(std::istream& stream);

} // namespace orvel::details
