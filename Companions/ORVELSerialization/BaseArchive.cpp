#include "ORVELSerialization/BaseArchive.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include <ORVELSerialization/ORVELSerializationLogMessages.h>
#include <ORVELSerialization/Private/Objects/ClassVersions.h>

namespace orvel
{

BaseArchive::BaseArchive(std::string name)
  : _name(std::move(name))
  , _classVersions(std::make_unique<details::ClassVersions>())
{
}

BaseArchive::~BaseArchive() = default;

void BaseArchive::registerClassVersion(const std::string& className, ipUInt32 version)
{
  _classVersions->set(className, version);
}

const ipUInt32* BaseArchive::findClassVersion(const std::string& className) const
{
  return _classVersions->find(className);
}

bool BaseArchive::isClassVersionRegistred(const std::string& className) const
{
  return findClassVersion(className) != nullptr;
}

ipUInt32 BaseArchive::getRegisterClassVersion(const std::string& className) const
{
  const ipUInt32* const version = findClassVersion(className);
  if (version == nullptr)
    throw std::out_of_range("No version of class " + className + " is registered in archive " + _name);
  return *version;
}

void BaseArchive::countUnfilledBytes(ipUInt64 sizeInBytes)
{
  checkOpen(ORVEL_HERE);
  if (sizeInBytes > _limits.maxUnfilledBytes - std::min(_nbUnfilledBytes, _limits.maxUnfilledBytes))
  {
    markFailed();
    raise(ORVEL_HERE, eORVELSerializationMessage::eTooManyUnfilledBytes, _name, getPlace(),
          _limits.maxUnfilledBytes);
  }
  _nbUnfilledBytes += sizeInBytes;
}

void BaseArchive::leaveSection()
{
  closeSection();
}

void BaseArchive::endSection(bool isUnwinding) noexcept
{
  try
  {
    if (isUnwinding)
      leaveSection();
    else
      closeSection();
  }
  catch (...)
  {
    markFailed();
    if (!isUnwinding)
      _pendingFailure = std::current_exception();
  }
}

void BaseArchive::checkOpen() const
{
  checkOpen(ORVEL_HERE);
}

void BaseArchive::raiseNotOpen(const SourceLocation& here) const
{
  if (_pendingFailure)
    std::rethrow_exception(std::exchange(_pendingFailure, nullptr));
  raise(here,
        _state == State::closed ? eORVELSerializationMessage::eClosed
                                : eORVELSerializationMessage::eFailedBefore,
        _name, getPlace());
}

ArchiveSectionManager::ArchiveSectionManager(BaseArchive& archive, const std::string& name)
  : _archive(archive)
  , _nbExceptions(std::uncaught_exceptions())
{
  archive.openSection(name);
}

ArchiveSectionManager::~ArchiveSectionManager()
{
  _archive.endSection(std::uncaught_exceptions() > _nbExceptions);
}

} // namespace orvel
