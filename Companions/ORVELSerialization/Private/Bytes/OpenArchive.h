#pragma once

// Opening what an archive writes to or reads from, with the failures of an archive in the name of `here`.

#include <iosfwd>
#include <memory>

#include <boost/filesystem/path.hpp>

#include <ORVELSerialization/Private/Bytes/ByteSink.h>
#include <ORVELSerialization/Private/Bytes/ByteSource.h>

namespace orvel
{
struct SourceLocation;
}

namespace orvel::details
{

/// Name of an archive that is no file.
constexpr const char* streamName = "stream";

/// \throw ORVELSerializationException with the path and the system's reason
std::unique_ptr<OutputTarget> openFileTarget(const boost::filesystem::path& path, const SourceLocation& here);

/// \throw ORVELSerializationException with the path and the system's reason
std::unique_ptr<InputOrigin> openFileOrigin(const boost::filesystem::path& path, const SourceLocation& here);

/// \throw ORVELSerializationException if the stream is in a failed state
std::unique_ptr<InputOrigin> openStreamOrigin(std::istream& stream, const SourceLocation& here);

} // namespace orvel::details
