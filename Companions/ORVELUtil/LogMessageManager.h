#pragma once

/// \file
/// \brief Process-wide tables of message texts.

#include <map>
#include <mutex>
#include <string>
#include <utility>

#include <ORVELUtil/ORVELUtilExport.h>

namespace orvel
{

/// \brief Table of message texts by domain key and id, one instance per key.
///
/// Libraries enter their tables when they are loaded; nothing takes a text out. All operations may be
/// called from several threads at once.
class ORVELUTIL_EXPORT LogMessageManager
{
public:
  /// \brief Return the instance of a key; the first call makes it. It lives until ORVELUtil is unloaded.
  static LogMessageManager& getInstance(const std::string& key);

  LogMessageManager(const LogMessageManager&) = delete;
  LogMessageManager& operator=(const LogMessageManager&) = delete;

  /// \brief Enter one text; a text that stands under the same domain and id is replaced, for good:
  /// its table is entered once.
  void addMessage(const std::string& domainKey, int id, const std::string& text);

  /// \brief Return a text.
  /// \throw std::out_of_range naming the id, the domain and the key of this table if there is none
  std::string getMessage(const std::string& domainKey, int id) const;

private:
  explicit LogMessageManager(std::string key);

  friend struct LogMessageManagers;

  std::string _key;
  mutable std::mutex _mutex;
  std::map<std::pair<std::string, int>, std::string> _texts;
};

} // namespace orvel
