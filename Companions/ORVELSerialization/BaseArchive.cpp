#include "ORVELSerialization/BaseArchive.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include <ORVELSerialization/ORVELSerializationLogMessages.h>

namespace orvel
{

BaseArchive::BaseArchive(std::string name)
  : _name(std::move(name))
{
}

BaseArchive::~BaseArchive() = default;

void BaseArchive::registerClassVersion(const std::string& className, ipUInt32 version)
{
  const std::size_t number = _classNames.find(className);
  if (number != details::NameTable::none)
  {
    _classVersions[number] = version;
    return;
  }
  _classVersions.reserve(_classVersions.size() +
                         1); // so that name and version are entered both or not at all
  _classNames.add(className);
  _classVersions.push_back(version);
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
  checkOpen();
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

void BaseArchive::raiseNotOpen() const
{
  if (_pendingFailure)
    std::rethrow_exception(std::exchange(_pendingFailure, nullptr));
  raise(ORVEL_HERE,
        _state == State::closed ? eORVELSerializationMessage::eClosed
                                : eORVELSerializationMessage::eFailedBefore,
        _name, getPlace());
}

void BaseArchive::raiseTooDeep()
{
  markFailed();
  raise(ORVEL_HERE, eORVELSerializationMessage::eTooDeep, _name, getPlace(), _limits.maxDepth);
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
