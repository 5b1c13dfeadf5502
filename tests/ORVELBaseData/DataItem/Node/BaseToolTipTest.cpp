#include "ORVELBaseData/DataItem/Node/BaseToolTip.h"

#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include <support/LayoutChecks.h>
#include <support/Sanitizers.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

/// Implements the two operations.
struct Explained : BaseToolTip
{
  explicit Explained(bool& isAlive)
    : _isAlive(isAlive)
  {
    _isAlive = true; // NOLINT(cppcoreguidelines-prefer-member-initializer): the caller's
  }
  ~Explained() override { _isAlive = false; }
  const std::string& getToolTip() const override { return _line; }
  const std::string& getLongToolTip() const override { return _text; }

private:
  bool& _isAlive;
  std::string _line = "A line";
  std::string _text = "As much as there is to say";
};

TEST(BaseToolTip, IsARootOfItsOwn)
{
  EXPECT_TRUE(std::is_abstract<BaseToolTip>::value);
  EXPECT_TRUE(std::has_virtual_destructor<BaseToolTip>::value);
  EXPECT_EQ(sizeof(BaseToolTip), sizeof(void*)); // the pointer to the virtual operations, no data, no base
}

TEST(BaseToolTip, HasItsVirtualOperationsInOrder)
{
  // Two entries for the destructor come first.
  EXPECT_EQ(vtableIndexOf(&BaseToolTip::getToolTip), 2U);
  EXPECT_EQ(vtableIndexOf(&BaseToolTip::getLongToolTip), 3U);
}

TEST(BaseToolTip, HasADestructorAndTwoPureOperationsAndNoMore)
{
  const AbstractTable table("_ZTVN5orvel11BaseToolTipE");
  EXPECT_TRUE(table.isPure(2));
  EXPECT_TRUE(table.isPure(3));
  if (!isSanitized) // the sanitizer widens the table
  {
    EXPECT_EQ(table.getSize(), 4U);
  }
}

TEST(BaseToolTip, GivesTheTextsOfTheDerivedClass)
{
  bool isAlive = false;
  const Explained explained(isAlive);
  const BaseToolTip& toolTip = explained;
  EXPECT_EQ(toolTip.getToolTip(), "A line");
  EXPECT_EQ(toolTip.getLongToolTip(), "As much as there is to say");
}

TEST(BaseToolTip, IsDestroyedThroughItsBase)
{
  bool isAlive = false;
  const BaseToolTip* const toolTip = new Explained(isAlive);
  EXPECT_TRUE(isAlive);
  delete toolTip;
  EXPECT_FALSE(isAlive);
}

} // namespace
