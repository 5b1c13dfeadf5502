#pragma once

// Texts in archives and about them: what encoding they fit, how messages quote them.

#include <string>
#include <string_view>

namespace orvel::details
{

/// Tells whether a text is well-formed UTF-8.
bool isUtf8(std::string_view text);

/// Tells whether XML can carry a text unchanged: UTF-8 without control characters (tab and line feed apart)
/// and without the two non-characters that XML excludes.
bool isXmlText(std::string_view text);

/// Counts the bytes up to the first one that XML excludes; carriage returns are let pass.
std::size_t countXmlText(std::string_view text);

/// A text for messages: as it is, long ones cut.
std::string shortened(std::string_view text);

/// A text for messages: between quotation marks, bytes outside printable ASCII as \xNN, long ones cut.
std::string quoted(std::string_view text);

} // namespace orvel::details
