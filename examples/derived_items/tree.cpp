// Works on trees of data items whose classes it does not know: a library that is loaded at run time brings
// them.
//
// usage: tree LIBRARY make FILE                         a new tree, with every node of the catalogue
//        tree LIBRARY print FILE                        the tree with its names, types, values and tool tips
//        tree LIBRARY change FILE NAME VALUE NEW_FILE   change a leaf at the top of the tree
//        tree LIBRARY compare FILE OTHER_FILE TOLERANCE
//        tree LIBRARY reload FILE                       read it with the library, without it and with it
//        again
//
// NAME is that of a leaf in the map at the top, which has a way to change its items; a node shows its items,
// but only its class can change them.

#include <cstdlib>
#include <dlfcn.h>
#include <iomanip>
#include <iostream>
#include <limits>
#include <locale>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include <boost/filesystem/path.hpp>
#include <boost/make_shared.hpp>

#include <ORVELBaseData/DataItem/DataItemUtils.h>
#include <ORVELBaseData/DataItem/Leaf/BaseDataItemEnumLeaf.h>
#include <ORVELBaseData/DataItem/Leaf/DataItemLeaf.h>
#include <ORVELBaseData/DataItem/LeafColl/DataItemLeafColl.h>
#include <ORVELBaseData/DataItem/Map/DataItemMap.h>
#include <ORVELBaseData/DataItem/Node/DataItemNodeFactory.h>
#include <ORVELBaseData/DataItem/NodeColl/BaseDataItemNodeColl.h>
#include <ORVELSerialization/ObjectFile.h>
#include <ORVELUtil/BaseException.h>

namespace
{

using namespace orvel;

/// A library, for as long as this lives. No object of its classes may live longer.
class Library
{
public:
  explicit Library(const std::string& path)
    : _handle(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL))
  {
    if (_handle == nullptr)
      throw std::runtime_error(dlerror());
  }
  ~Library() { dlclose(_handle); }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

private:
  void* _handle;
};

/// Refuses what archives can bring and walks over a tree can't bear: null pointers where items belong, and
/// items that hold themselves.
class TreeCheck
{
public:
  void visit(const BaseDataItem* item)
  {
    if (item == nullptr)
      throw std::runtime_error("an item is missing from the tree");
    const auto [place, isNew] = _isOpen.emplace(item, true);
    if (!isNew && place->second)
      throw std::runtime_error("an item of the tree holds itself");
    if (!isNew)
      return; // it is in several places; to look at it once is enough
    visitItemsOf(*item);
    place->second = false;
  }

private:
  void visitItemsOf(const BaseDataItem& item)
  {
    switch (item.getDataItemType().getDomain())
    {
    case eDataItemType::eDIT_Map:
    {
      const auto& map = static_cast<const DataItemMap&>(item);
      for (const std::string& name : map.getItemNames())
        visit(map.getItemPtr(name).get());
      break;
    }
    case eDataItemType::eDIT_Node:
    {
      const auto& node = static_cast<const BaseDataItemNode&>(item);
      for (const std::string& key : node.getItemKeys())
        visit(&node.getItem(key));
      break;
    }
    case eDataItemType::eDIT_NodeColl:
      for (const DataItemNodePtr& node : static_cast<const BaseDataItemNodeColl&>(item).getColl())
        visit(node.get());
      break;
    case eDataItemType::eDIT_Leaf:
    case eDataItemType::eDIT_LeafColl:
      break;
    }
  }

  std::map<const BaseDataItem*, bool> _isOpen; // whether its items are being looked at
};

/// The file may come from anywhere, so all that it holds is checked.
boost::shared_ptr<DataItemMap> load(const std::string& file)
{
  auto tree = loadObject<DataItemMap>(file, ArchiveTrust::untrusted);
  TreeCheck().visit(tree.get());
  return tree;
}

// Values as text

template <class T>
std::string textOf(const T& value)
{
  std::ostringstream text;
  text.imbue(std::locale::classic());
  if constexpr (std::is_same_v<T, bool>)
    text << (value ? "true" : "false");
  else if constexpr (sizeof(T) == 1)
    text << static_cast<int>(value); // a number, no letter
  else if constexpr (std::is_floating_point_v<T>)
    text << std::setprecision(std::numeric_limits<T>::max_digits10) << value;
  else if constexpr (std::is_same_v<T, boost::filesystem::path>)
    text << value.string();
  else
    text << value;
  return text.str();
}

template <class T>
T valueOf(const std::string& text)
{
  if constexpr (std::is_same_v<T, std::string> || std::is_same_v<T, boost::filesystem::path>)
    return text;
  else
  {
    // Small integers would be read as letters.
    using Number = std::conditional_t<sizeof(T) == 1 && !std::is_same_v<T, bool>, int, T>;
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    Number number{};
    stream >> std::boolalpha >> number;
    const bool wouldWrap = std::is_unsigned_v<Number> && text.find('-') != std::string::npos;
    if (wouldWrap || !stream || stream.peek() != std::istringstream::traits_type::eof() ||
        static_cast<Number>(static_cast<T>(number)) != number)
      throw std::runtime_error("\"" + text + "\" is no value of this type");
    return static_cast<T>(number);
  }
}

std::string textOf(const BaseDataItemLeaf& leaf)
{
  switch (leaf.getDataItemValueType().getDomain())
  {
#define TEXT_OF_LEAF(Type, Name, text)                                                                       \
  case eDataItemValueType::eDIVT_##Name:                                                                     \
    return textOf<Type>(static_cast<const DataItemLeaf<Type>&>(leaf).getValue());
    ORVEL_FOR_EACH_VALUE_TYPE(TEXT_OF_LEAF)
#undef TEXT_OF_LEAF
  case eDataItemValueType::eDIVT_Enum:
    break;
  }
  return static_cast<const BaseDataItemEnumLeaf&>(leaf).getValueStr();
}

template <class T>
std::string textOfValues(const BaseDataItemLeafColl& coll)
{
  std::string text = "{";
  const char* separator = "";
  for (const T& value : static_cast<const DataItemLeafColl<T>&>(coll).getColl())
  {
    text += separator + textOf<T>(value);
    separator = ", ";
  }
  return text + "}";
}

std::string textOf(const BaseDataItemLeafColl& coll)
{
  switch (coll.getDataItemValueType().getDomain())
  {
#define TEXT_OF_COLL(Type, Name, text)                                                                       \
  case eDataItemValueType::eDIVT_##Name:                                                                     \
    return textOfValues<Type>(coll);
    ORVEL_FOR_EACH_VALUE_TYPE(TEXT_OF_COLL)
#undef TEXT_OF_COLL
  case eDataItemValueType::eDIVT_Enum: // there are none
    break;
  }
  return "";
}

void setText(BaseDataItemLeaf& leaf, const std::string& value)
{
  switch (leaf.getDataItemValueType().getDomain())
  {
#define SET_LEAF(Type, Name, text)                                                                           \
  case eDataItemValueType::eDIVT_##Name:                                                                     \
    static_cast<DataItemLeaf<Type>&>(leaf).setValue(valueOf<Type>(value));                                   \
    return;
    ORVEL_FOR_EACH_VALUE_TYPE(SET_LEAF)
#undef SET_LEAF
  case eDataItemValueType::eDIVT_Enum:
    break;
  }
  auto& enumLeaf = static_cast<BaseDataItemEnumLeaf&>(leaf);
  ipUInt32 number = 0;
  if (!enumLeaf.fromString(value, number))
    throw std::runtime_error("\"" + value + "\" is no " + enumLeaf.getEnumNameStr());
  enumLeaf.setEnumValue(number);
}

// Printing

void print(const BaseDataItem& item, const std::string& name, const std::string& toolTip, int depth);

void printLine(const std::string& name, const std::string& content, const std::string& toolTip, int depth)
{
  std::cout << std::string(static_cast<std::size_t>(2 * depth), ' ') << name << ": " << content
            << (toolTip.empty() ? "" : "  (" + toolTip + ")") << "\n";
}

void printItemsOf(const BaseDataItemNode& node, int depth)
{
  for (const std::string& key : node.getItemKeys())
    print(node.getItem(key), node.getItemName(key), node.getItemToolTip(key), depth);
}

/// \param toolTip what the owner of the item tells of it
void print(const BaseDataItem& item, const std::string& name, const std::string& toolTip, int depth)
{
  switch (item.getDataItemType().getDomain())
  {
  case eDataItemType::eDIT_Leaf:
  {
    const auto& leaf = static_cast<const BaseDataItemLeaf&>(item);
    printLine(name, std::string(leaf.getDataItemValueType().getText()) + " = " + textOf(leaf), toolTip,
              depth);
    break;
  }
  case eDataItemType::eDIT_LeafColl:
  {
    const auto& coll = static_cast<const BaseDataItemLeafColl&>(item);
    printLine(name, std::string(coll.getDataItemValueType().getText()) + " = " + textOf(coll), toolTip,
              depth);
    break;
  }
  case eDataItemType::eDIT_Map:
  {
    const auto& map = static_cast<const DataItemMap&>(item);
    printLine(name, "map of " + std::to_string(map.getSize()), toolTip, depth);
    for (const std::string& itemName : map.getItemNames())
      print(map.getItem(itemName), itemName, "", depth + 1);
    break;
  }
  case eDataItemType::eDIT_Node:
  {
    const auto& node = static_cast<const BaseDataItemNode&>(item);
    printLine(name, "node " + node.getNodeName() + " of library " + node.getNodeLibraryName(),
              toolTip.empty() ? node.getToolTip() : toolTip, depth);
    printItemsOf(node, depth + 1);
    break;
  }
  case eDataItemType::eDIT_NodeColl:
  {
    const auto& coll = static_cast<const BaseDataItemNodeColl&>(item);
    printLine(name, "collection of " + std::to_string(coll.getSize()) + " nodes", toolTip, depth);
    for (ipUInt32 i = 0; i < coll.getSize(); ++i)
      print(coll.getNodeBase(i), std::to_string(i), "", depth + 1);
    break;
  }
  }
}

// The words

template <class T>
DataItemPtr makeLeaf(const T& value)
{
  const auto leaf = boost::make_shared<DataItemLeaf<T>>();
  leaf->setValue(value);
  return leaf;
}

void make(const std::string& file)
{
  const auto tree = boost::make_shared<DataItemMap>();
  tree->insertItem("author", makeLeaf<std::string>("Ada"));
  tree->insertItem("tolerance", makeLeaf(0.001));
  tree->insertItem("rounds", makeLeaf<ipUInt8>(3));

  // Nodes that this program knows by the catalogue alone.
  const auto steps = boost::make_shared<BaseDataItemNodeColl>();
  const DataItemNodeFactory& factory = DataItemNodeFactory::getInstance();
  for (const std::string& key : factory.getRegistredNodes())
    steps->push_back(factory.createNode(key));
  tree->insertItem("steps", steps);
  saveObject(file, *tree);
}

void change(const std::string& file, const std::string& name, const std::string& value,
            const std::string& newFile)
{
  const auto tree = load(file);
  BaseDataItem& item = tree->getItem(name);
  if (item.getDataItemType() != eDataItemType::eDIT_Leaf)
    throw std::runtime_error("\"" + name + "\" is no leaf");
  setText(static_cast<BaseDataItemLeaf&>(item), value);
  saveObject(newFile, *tree);
}

void compare(const std::string& file, const std::string& otherFile, double tolerance)
{
  std::cout << (orvel::equal(*load(file), *load(otherFile), tolerance) ? "equal" : "different") << "\n";
}

void reload(const std::string& libraryPath, const std::string& file)
{
  const auto tryToLoad = [&](const char* when)
  {
    try
    {
      const ipUInt32 size = load(file)->getSize();
      std::cout << when << ": " << size << " items\n";
    }
    catch (const BaseException& exception)
    {
      std::cout << when << ": " << exception.getMessage() << "\n";
    }
  };
  {
    const Library library(libraryPath);
    tryToLoad("loaded");
  }
  tryToLoad("unloaded");
  const Library library(libraryPath);
  tryToLoad("loaded again");
}

int usage()
{
  std::cerr << "usage: tree LIBRARY make FILE\n"
               "       tree LIBRARY print FILE\n"
               "       tree LIBRARY change FILE NAME VALUE NEW_FILE\n"
               "       tree LIBRARY compare FILE OTHER_FILE TOLERANCE\n"
               "       tree LIBRARY reload FILE\n";
  return 2;
}

int run(const std::vector<std::string>& arguments)
{
  if (arguments.size() < 3)
    return usage();
  const std::string& word = arguments[1];
  const std::size_t nbMore = arguments.size() - 2;
  if (word == "reload" && nbMore == 1)
  {
    reload(arguments[0], arguments[2]);
    return 0;
  }

  const Library library(arguments[0]);
  if (word == "make" && nbMore == 1)
    make(arguments[2]);
  else if (word == "print" && nbMore == 1)
    print(*load(arguments[2]), arguments[2], "", 0);
  else if (word == "change" && nbMore == 4)
    change(arguments[2], arguments[3], arguments[4], arguments[5]);
  else if (word == "compare" && nbMore == 3)
    compare(arguments[2], arguments[3], valueOf<double>(arguments[4]));
  else
    return usage();
  return 0;
}

} // namespace

int main(int argc, char** argv)
{
  try
  {
    return run(std::vector<std::string>(argv + 1, argv + argc));
  }
  catch (const orvel::BaseException& exception)
  {
    std::cerr << "tree: " << exception.getMessage() << "\n";
  }
  catch (const std::exception& exception)
  {
    std::cerr << "tree: " << exception.what() << "\n";
  }
  return EXIT_FAILURE;
}
