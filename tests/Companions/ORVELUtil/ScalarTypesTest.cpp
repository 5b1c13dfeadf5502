#include "ORVELUtil/ScalarTypes.h"

#include <limits>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using namespace orvel;

template <class Alias, class Type>
constexpr bool g_is = std::is_same_v<Alias, Type>;

// The class-name texts and the item operators tell these types apart: long is not long long here.
TEST(ScalarTypes, AreTheTypesOfThe64BitLinuxDataModel)
{
  EXPECT_TRUE((g_is<ipBool, bool>));
  EXPECT_TRUE((g_is<ipInt8, signed char>));
  EXPECT_TRUE((g_is<ipUInt8, unsigned char>));
  EXPECT_TRUE((g_is<ipInt16, short>));
  EXPECT_TRUE((g_is<ipUInt16, unsigned short>));
  EXPECT_TRUE((g_is<ipInt32, int>));
  EXPECT_TRUE((g_is<ipUInt32, unsigned int>));
  EXPECT_TRUE((g_is<ipInt64, long>));
  EXPECT_TRUE((g_is<ipUInt64, unsigned long>));
  EXPECT_TRUE((g_is<ipReal32, float>));
  EXPECT_TRUE((g_is<ipReal64, double>));
}

TEST(ScalarTypes, HaveFixedWidths)
{
  EXPECT_EQ(sizeof(ipBool), 1U);
  EXPECT_EQ(std::numeric_limits<ipInt8>::digits, 7);
  EXPECT_EQ(std::numeric_limits<ipUInt8>::digits, 8);
  EXPECT_EQ(std::numeric_limits<ipInt16>::digits, 15);
  EXPECT_EQ(std::numeric_limits<ipUInt16>::digits, 16);
  EXPECT_EQ(std::numeric_limits<ipInt32>::digits, 31);
  EXPECT_EQ(std::numeric_limits<ipUInt32>::digits, 32);
  EXPECT_EQ(std::numeric_limits<ipInt64>::digits, 63);
  EXPECT_EQ(std::numeric_limits<ipUInt64>::digits, 64);
}

TEST(ScalarTypes, HaveIeee754SinglesAndDoubles)
{
  EXPECT_TRUE(std::numeric_limits<ipReal32>::is_iec559);
  EXPECT_EQ(std::numeric_limits<ipReal32>::digits, 24);
  EXPECT_TRUE(std::numeric_limits<ipReal64>::is_iec559);
  EXPECT_EQ(std::numeric_limits<ipReal64>::digits, 53);
}

TEST(ScalarTypes, HavePointerAliases)
{
  EXPECT_TRUE((g_is<ipBoolPtr, bool*> && g_is<ipBoolConstPtr, const bool*>));
  EXPECT_TRUE((g_is<ipInt8Ptr, signed char*> && g_is<ipInt8ConstPtr, const signed char*>));
  EXPECT_TRUE((g_is<ipUInt8Ptr, unsigned char*> && g_is<ipUInt8ConstPtr, const unsigned char*>));
  EXPECT_TRUE((g_is<ipInt16Ptr, short*> && g_is<ipInt16ConstPtr, const short*>));
  EXPECT_TRUE((g_is<ipUInt16Ptr, unsigned short*> && g_is<ipUInt16ConstPtr, const unsigned short*>));
  EXPECT_TRUE((g_is<ipInt32Ptr, int*> && g_is<ipInt32ConstPtr, const int*>));
  EXPECT_TRUE((g_is<ipUInt32Ptr, unsigned int*> && g_is<ipUInt32ConstPtr, const unsigned int*>));
  EXPECT_TRUE((g_is<ipInt64Ptr, long*> && g_is<ipInt64ConstPtr, const long*>));
  EXPECT_TRUE((g_is<ipUInt64Ptr, unsigned long*> && g_is<ipUInt64ConstPtr, const unsigned long*>));
  EXPECT_TRUE((g_is<ipReal32Ptr, float*> && g_is<ipReal32ConstPtr, const float*>));
  EXPECT_TRUE((g_is<ipReal64Ptr, double*> && g_is<ipReal64ConstPtr, const double*>));
}

TEST(ScalarTypes, HaveAListOfSingles)
{
  EXPECT_TRUE((g_is<Real32Vector, std::vector<float>>));
}

} // namespace
