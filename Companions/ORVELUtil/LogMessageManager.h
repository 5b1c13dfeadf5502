#pragma once

/// \file
/// \brief Process-wide tables of message texts.

#include <memory>
#include <string>

#include <ORVELUtil/ORVELUtilExport.h>

namespace orvel
{

/// \brief Table of message texts by domain key and id.
///
/// There is one instance per key. Libraries add their texts when they are loaded; nothing removes a text. All
/// operations may be called from several threads at once.
class ORVELUTIL_EXPORT LogMessageManager
{
public:
  /// \brief Return the instance of a key; the first call makes it. It lives until ORVELUtil is unloaded.
  static LogMessageManager& getInstance(const std::string& key);

  ~LogMessageManager();
  LogMessageManager(const LogMessageManager&) = delete;
  LogMessageManager& operator=(const LogMessageManager&) = delete;

  /// \brief Add one text, in place of the one of the same domain and id.
  ///
  /// A text that is replaced is gone for good: a library adds its table only once.
  void addMessage(const std::string& domainKey, int id, const std::string& text);

  /// \brief Return a text.
  /// \throw std::out_of_range if there is none, with the id, the domain and the key of this table
  std::string getMessage(const std::string& domainKey, int id) const;

private:
  explicit LogMessageManager(const std::string& key);

  friend struct LogMessageManagers;

  struct State;

  std::unique_ptr<State> _state;
};

} // namespace orvel
