#pragma once

/// \file
/// \brief A hint to the processor.

#include <boost/shared_ptr.hpp>

namespace orvel::details
{

/// \brief Tell the processor that an object will be needed soon.
///
/// Items lie scattered over the memory: to wait for each of them takes a good part of the time of copying and
/// comparing trees.
template <class Item>
void prefetch(const boost::shared_ptr<Item>& item)
{
  __builtin_prefetch(item.get());
}

} // namespace orvel::details
