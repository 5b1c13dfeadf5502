#include <cstddef>
#include <type_traits>

#include <gtest/gtest.h>

#include <ORVELBaseData/ORVELBaseData.h>
#include <ORVELSerialization/ORVELSerialization.h>
#include <ORVELUtil/ORVELUtil.h>

namespace
{

using namespace orvel;

enum SomethingElse
{
  somethingElse
};

enum class SomethingScoped
{
  something
};

/// What every named enumeration of the kit is made of.
template <class E>
class NamedEnumerations : public ::testing::Test
{
};

using All = ::testing::Types<eBufferType, eCalibrationMessage, eDataItemMessage, eDataItemType,
                             eDataItemValueType, eDataType, eDiscreteOrientation2d, eDiscreteOrientation3d,
                             eKernelMessage, eKernelType, eNeighborhood2dType, eNeighborhood3dType,
                             eORVELBaseDataMessage, eORVELSerializationMessage, eORVELUtilErrors,
                             ePlanIndexMessage, eSEXYSubType, eSEXYZSubType, eSklSrzMode, eSobelKernelType,
                             eStructuringElementMessage, eStructuringElementType>;
TYPED_TEST_SUITE(NamedEnumerations, All, );

TYPED_TEST(NamedEnumerations, ArePlainValuesOfEightBytes)
{
  static_assert(sizeof(TypeParam) == 8);
  static_assert(std::is_trivially_copyable_v<TypeParam>);
  static_assert(std::is_trivially_destructible_v<TypeParam>);
  static_assert(!std::is_aggregate_v<TypeParam>);
  static_assert(!std::is_polymorphic_v<TypeParam>);
  static_assert(std::is_default_constructible_v<TypeParam>);
}

TYPED_TEST(NamedEnumerations, AreMadeOfTheirEnumerators)
{
  using Domain = typename TypeParam::domain;
  static_assert(std::is_enum_v<Domain>);
  static_assert(std::is_convertible_v<Domain, TypeParam>);
  static_assert(std::is_convertible_v<const Domain&, TypeParam>);
  static_assert(std::is_constructible_v<TypeParam, Domain>);
  static_assert(std::is_assignable_v<TypeParam&, Domain>);
  static_assert(!std::is_convertible_v<TypeParam, Domain>);
  const auto first = TypeParam(ipUInt64{~0UL}).getDomain(); // clamped
  const TypeParam converted = first;
  EXPECT_TRUE(converted == first);
  EXPECT_EQ(converted.getValue(), static_cast<ipUInt64>(first));
}

TYPED_TEST(NamedEnumerations, AreMadeOfNumbersOnlyExplicitly)
{
  static_assert(std::is_constructible_v<TypeParam, ipUInt64>);
  static_assert(std::is_constructible_v<TypeParam, int>);
  static_assert(std::is_constructible_v<TypeParam, ipUInt32>);
  static_assert(std::is_constructible_v<TypeParam, double>);
  static_assert(std::is_constructible_v<TypeParam, SomethingElse>);
  static_assert(!std::is_convertible_v<ipUInt64, TypeParam>);
  static_assert(!std::is_convertible_v<int, TypeParam>);
  static_assert(!std::is_convertible_v<ipUInt32, TypeParam>);
  static_assert(!std::is_convertible_v<double, TypeParam>);
  static_assert(!std::is_convertible_v<SomethingElse, TypeParam>);
  static_assert(!std::is_assignable_v<TypeParam&, int>);
  static_assert(!std::is_assignable_v<TypeParam&, SomethingElse>);
  EXPECT_EQ(TypeParam(3).getValue(), 3U);
  EXPECT_EQ(TypeParam(ipUInt64{0x500000003}).getValue(), 0x500000003U);
}

TYPED_TEST(NamedEnumerations, AreMadeOfNothingElse)
{
  static_assert(!std::is_constructible_v<TypeParam, SomethingScoped>);
  static_assert(!std::is_constructible_v<TypeParam, const char*>);
  static_assert(!std::is_constructible_v<TypeParam, void*>);
  static_assert(!std::is_constructible_v<TypeParam, std::nullptr_t>);
  static_assert(!std::is_constructible_v<TypeParam, typename TypeParam::domain, int>);
  class OfAnother : public NamedEnumeration<OfAnother>
  {
  public:
    enum domain
    {
      one
    };
    static const char* findText(ipUInt32);
  };
  static_assert(!std::is_constructible_v<TypeParam, OfAnother>);
  static_assert(!std::is_convertible_v<typename OfAnother::domain, TypeParam>);
  static_assert(!std::is_convertible_v<TypeParam, ipUInt64>);
}

} // namespace
