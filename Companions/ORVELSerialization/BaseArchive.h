#pragma once

/// \file
/// \brief Common base of both archive directions, and the guard of its sections.

#include <exception>
#include <memory>
#include <string>
#include <string_view>

#include <ORVELSerialization/ArchiveLimits.h>
#include <ORVELSerialization/ORVELSerializationExport.h>
#include <ORVELUtil/ScalarTypes.h>
#include <ORVELUtil/SourceLocation.h>

namespace orvel
{

namespace details
{
struct ArchiveAccess;
class ClassVersions;
class ObjectGuard;
class SectionScope;
} // namespace details

/// \brief Common base of the archives: class versions, sections, limits, and the state after a failure.
///
/// An archive is open until close() or its first failure. After a failure every operation that moves
/// data raises one fixed error (id 23, "... the archive can't be used after a failure"); after close(), id
/// 24. One thread uses an archive.
class ORVELSERIALIZATION_EXPORT BaseArchive
{
public:
  virtual ~BaseArchive();
  BaseArchive(const BaseArchive&) = delete;
  BaseArchive& operator=(const BaseArchive&) = delete;

  /// \brief Return whether the archive stores every element under its own key; if not, it takes vectors of
  /// numbers as raw blocks. Fixed by the concrete archive.
  virtual bool isElementWise() const = 0;

  /// \brief Record the version of a class for the rest of this archive's life; a later call replaces it.
  ///
  /// Objects do so before the first of their class: all that follow are read under that version. A version
  /// that was recorded before that is not written, and the objects are written in the newest layout all the
  /// same.
  void registerClassVersion(const std::string& className, ipUInt32 version);

  /// \brief Return whether the version of a class is recorded.
  bool isClassVersionRegistred(const std::string& className) const;

  /// \brief Return the recorded version, null if none is recorded; valid until the next call that records
  /// one.
  const ipUInt32* findClassVersion(const std::string& className) const;

  /// \brief Return the recorded version.
  /// \throw std::out_of_range naming the class if none is recorded: ask isClassVersionRegistred() first
  ipUInt32 getRegisterClassVersion(const std::string& className) const;

  /// \brief Count memory of an object that no bytes of the archive fill.
  ///
  /// Classes that have such objects call it on writing and, before they allocate, on reading, with the same
  /// size: what one archive takes the other gives back.
  /// \throw ORVELSerializationException if the archive has more of it in all than
  /// ArchiveLimits::maxUnfilledBytes
  void countUnfilledBytes(ipUInt64 sizeInBytes);

  const ArchiveLimits& getLimits() const { return _limits; }
  void setLimits(const ArchiveLimits& limits) { _limits = limits; } ///< from the next operation on

  /// \brief Return what failures call the archive: the path as given, or "stream".
  const std::string& getName() const { return _name; }

  bool isFailed() const { return _state == State::failed; } ///< an operation has failed
  bool isClosed() const { return _state == State::closed; } ///< close() has succeeded

protected:
  explicit BaseArchive(std::string name);

  /// \brief Open a section within the present one; the name is for people who read the file.
  virtual void openSection(std::string_view name) = 0;

  /// \brief Close the innermost section. Does nothing to the file once the archive has failed.
  virtual void closeSection() = 0;

  /// \brief Close the innermost section because an exception leaves it.
  ///
  /// An input archive skips what is left of the section. Calls closeSection() unless it is overridden.
  virtual void leaveSection();

  /// \brief Return the place of the present operation for messages, such as "byte 17".
  virtual std::string getPlace() const = 0;

  /// \brief Raise unless the archive is open.
  void checkOpen() const;

  /// \brief Raise in the name of `here` unless the archive is open.
  void checkOpen(const SourceLocation& here) const
  {
    if (_state != State::open)
      raiseNotOpen(here);
  }

  /// \brief Refuse every further use.
  void markFailed() { _state = State::failed; }
  void markClosed() { _state = State::closed; }

private:
  friend class ArchiveSectionManager;
  friend class details::ObjectGuard;
  friend class details::SectionScope;
  friend struct details::ArchiveAccess;

  enum class State
  {
    open,
    failed,
    closed
  };

  void endSection(bool isUnwinding) noexcept;
  [[noreturn]] void raiseNotOpen(const SourceLocation& here) const;

  std::string _name;
  State _state = State::open;
  ipUInt32 _depth = 0;   // objects that are being moved, one within the other
  ipUInt32 _deepest = 0; // depth reached so far within the object that is being moved
  ipUInt64 _nbUnfilledBytes = 0;
  ArchiveLimits _limits;
  std::unique_ptr<details::ClassVersions> _classVersions;
  mutable std::exception_ptr _pendingFailure; // of closing a section, where nothing may be thrown
};

/// \brief Scope guard of a section: the constructor opens it, the destructor closes it.
///
/// If the destructor runs because of an exception, an input archive skips what is left of the section. The
/// archive can be used on, unless it has failed itself or an object's `write` or `read` has. Shared objects
/// and class versions that were skipped are missing afterwards: what refers to them can't be read.
///
/// A failure to close the section is raised by the next operation on the archive, as destructors do not
/// throw; a failure to close it because of an exception only marks the archive as failed.
class ORVELSERIALIZATION_EXPORT ArchiveSectionManager
{
public:
  /// \param archive must outlive the guard
  /// \param name stored by archives that store names; not compared on input
  ArchiveSectionManager(BaseArchive& archive, const std::string& name);
  ~ArchiveSectionManager();
  ArchiveSectionManager(const ArchiveSectionManager&) = delete;
  ArchiveSectionManager& operator=(const ArchiveSectionManager&) = delete;

private:
  BaseArchive& _archive;
  int _nbExceptions; // in flight when the section was opened
};

namespace details
{

/// \brief A section that finish() closes; it raises if that fails. Without finish() an exception leaves the
/// section, as it leaves one of ArchiveSectionManager.
///
/// The item operators use it, as it need not count the exceptions in flight.
class SectionScope
{
public:
  SectionScope(BaseArchive& archive, std::string_view name)
    : _archive(archive)
  {
    archive.openSection(name);
  }
  ~SectionScope()
  {
    if (!_isFinished)
      _archive.endSection(true);
  }
  SectionScope(const SectionScope&) = delete;
  SectionScope& operator=(const SectionScope&) = delete;

  void finish()
  {
    _isFinished = true;
    _archive.closeSection();
  }

private:
  BaseArchive& _archive;
  bool _isFinished = false;
};

/// \brief Marks an archive as failed unless finish() is called: a failed `write` or `read` of an object may have
/// moved part of it.
class ObjectGuard
{
public:
  explicit ObjectGuard(BaseArchive& archive)
    : _archive(archive)
  {
  }
  ~ObjectGuard()
  {
    if (!_isFinished)
      _archive.markFailed();
  }
  ObjectGuard(const ObjectGuard&) = delete;
  ObjectGuard& operator=(const ObjectGuard&) = delete;

  void finish() { _isFinished = true; }

private:
  BaseArchive& _archive;
  bool _isFinished = false;
};

} // namespace details

} // namespace orvel
