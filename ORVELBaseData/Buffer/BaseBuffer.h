#pragma once

/// \file
/// \brief Root of the buffers.

#include <ORVELBaseData/Buffer/BufferType.h>
#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELSerialization/BaseObjectWithSkeleton.h>
#include <ORVELSerialization/DataType.h>
#include <ORVELSerialization/SerializableClass.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

/// \brief Root of the buffers: a run of elements of a type that is known at run time.
///
/// A buffer has two states. It is born not initialised; the `init` of its class initialises it, from either
/// state; clear() takes it back. The accessors answer only for an initialised buffer. A buffer of no elements
/// is initialised like any other.
///
/// A buffer has no lock: one thread changes it, or several read it. Copies are made by the concrete classes,
/// each in its own way; through this class there is none. The order of the virtual operations and of the
/// fields is part of the binary interface.
class ORVELBASEDATA_EXPORT BaseBuffer : public BaseObjectWithSkeleton
{
  ORVEL_DECLARE_WITHOUT_COPY(BaseBuffer)

public:
  ~BaseBuffer() override = 0;

  virtual eBufferType getBufferType() const = 0; ///< the kind of buffer, in any state

protected:
  /// \brief Release what the derived class holds. Called by clear(); nothing here.
  virtual void clearDerived();

public:
  bool isInitialized() const { return _isInitialized; } ///< whether the accessors answer

  /// \brief Return the number of elements.
  /// \throw ORVELBaseDataException (eBufferNotInitialized) if the buffer is not initialised
  ipUInt64 getSize() const;

  /// \brief Return the size of one element, in bytes.
  /// \throw ORVELBaseDataException (eBufferNotInitialized) if the buffer is not initialised
  ipUInt32 getBufferBaseSize() const;

  /// \brief Return the type of the elements.
  /// \throw ORVELBaseDataException (eBufferNotInitialized) if the buffer is not initialised
  const eDataType& getDataType() const;

  /// \brief Return the size of all elements in bytes, in 64-bit arithmetic that wraps around.
  /// \throw ORVELBaseDataException (eBufferNotInitialized) if the buffer is not initialised; it names getSize()
  ipUInt64 getMemorySize() const;

  /// \brief Take the buffer back to not initialised and free what it owns. Valid in any state.
  void clear();

protected:
  BaseBuffer() = default;

  /// \brief Initialise the buffer, or give an initialised one new values.
  ///
  /// A dataType that is not an enumerator is accepted, with elements of 0 bytes. XML archives cannot hold
  /// such a buffer (std::logic_error); binary ones hold it as eDT_None, which no buffer reads.
  /// \throw ORVELBaseDataException (eInvalidBufferType) if dataType is eDT_None; nothing has changed
  void initBase(ipUInt64 size, const eDataType& dataType);

private:
  ipUInt64 _size = 0;
  eDataType _dataType = eDataType::eDT_None;
  ipUInt32 _baseSize = 0; // bytes of one element
  bool _isInitialized = false;
};

} // namespace orvel
