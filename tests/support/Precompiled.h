#pragma once

/// \file
/// \brief What most tests include, compiled once for all of them. A test still includes what it uses.

#include <algorithm>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <ORVELSerialization/BinaryArchive.h>
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/XmlArchive.h>
#include <ORVELUtil/DynamicObjectFactory.h>
#include <support/RaisedFailure.h>
