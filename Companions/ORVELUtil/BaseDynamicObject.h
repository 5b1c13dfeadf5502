#pragma once

/// \file
/// \brief Root of every class that can be created by its class name.

#include <string>

#include <boost/shared_ptr.hpp>

#include <ORVELUtil/ORVELUtilExport.h>

namespace orvel
{

class BaseDynamicObject;

using DynamicObjectPtr = boost::shared_ptr<BaseDynamicObject>;            ///< shared object
using DynamicObjectConstPtr = boost::shared_ptr<const BaseDynamicObject>; ///< shared constant object

/// \brief Root of the classes that are created by class name and copied through a common interface.
///
/// The order of the virtual operations is part of the binary interface.
class ORVELUTIL_EXPORT BaseDynamicObject
{
public:
  virtual ~BaseDynamicObject() = default;

  /// \brief Return the class-name text of the dynamic type, such as "orvel::KernelXY".
  virtual const std::string& getClassName() const = 0;

  /// \brief Create a default-constructed object of the dynamic type; the caller owns it.
  virtual BaseDynamicObject* createNew() const = 0;

  /// \brief Create a default-constructed object of the dynamic type under a shared pointer.
  virtual DynamicObjectPtr createShared() const = 0;

  /// \brief Return whether copy, duplicate and duplicateShared work; otherwise they raise.
  virtual bool hasCopySupport() const = 0;

  /// \brief Create an object that equals this one; the caller owns it. Leaks nothing if copying throws.
  ///
  /// A class that does not define it inherits that of its base, which creates an object of the base.
  virtual BaseDynamicObject* duplicate() const = 0;

  /// \brief Create an object that equals this one under a shared pointer.
  virtual DynamicObjectPtr duplicateShared() const = 0;

  /// \brief Hook for derived classes. Does nothing here, and nothing calls it.
  virtual void initCtorCopy(const BaseDynamicObject& other);

  /// \brief Make this object equal to another one of the same class; the class is not checked.
  ///
  /// The assignment of every class calls it, also for `x = x`.
  virtual void copy(const BaseDynamicObject& other) = 0;

protected:
  BaseDynamicObject() = default;

  // The compiler's own assignment would bypass the virtual copy: each class defines its assignment as a call
  // of copy.
  BaseDynamicObject(const BaseDynamicObject&) = delete;
  BaseDynamicObject& operator=(const BaseDynamicObject&) = delete;
};

} // namespace orvel
