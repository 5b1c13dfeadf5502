#pragma once

/// \file
/// \brief Root of the objects whose structure and data can be archived apart.

#include <string>

#include <ORVELSerialization/BaseSerializationObject.h>
#include <ORVELSerialization/ORVELSerializationExport.h>
#include <ORVELSerialization/SklSrzMode.h>

namespace orvel
{

/// \brief Root of the objects whose structure and data can be archived apart.
///
/// The serialization mode tells how much the next `write` or `read` moves. It is no part of the object's
/// value: it is neither copied nor stored, and stays until it is set again. An object that a shared pointer
/// brings from an archive is new, so it is read in full mode. There is no lock.
class ORVELSERIALIZATION_EXPORT BaseObjectWithSkeleton : public BaseSerializationObject
{
public:
  ~BaseObjectWithSkeleton() override;

  static const std::string& getTypeName(); ///< "orvel::BaseObjectWithSkeleton"

  void copy(const BaseDynamicObject& other) override;     ///< takes nothing over: the mode stays
  BoolResult write(BaseOArchive& archive) const override; ///< writes nothing of its own
  BoolResult read(BaseIArchive& archive) override;        ///< reads nothing of its own

  /// \brief Return the mode; eSSM_Full in a new object.
  const eSklSrzMode& getSerializationMode() const { return _serializationMode; }

  /// \brief Set the mode for what follows. Constant, as writing does not change an object's value.
  void setSerializationMode(const eSklSrzMode& mode) const { _serializationMode = mode; }

protected:
  BaseObjectWithSkeleton();

private:
  mutable eSklSrzMode _serializationMode = eSklSrzMode::eSSM_Full;
};

} // namespace orvel
