// A hash map that remembers the order in which its keys came, so that every walk over it, and so
// every saved file, is the same on every machine. References to values stay valid until their key
// is erased. Standard library only; no thread of its own.
#pragma once

#include <cstddef>
#include <list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace ordered_map_detail {

// The form in which keys are looked up: text by view, so that no search makes a string.
template <typename Key>
struct LookupOf {
    using Type = Key;
};
template <>
struct LookupOf<std::string> {
    using Type = std::string_view;
};

}  // namespace ordered_map_detail

template <typename Key, typename Value>
class OrderedMap {
  public:
    using Lookup = typename ordered_map_detail::LookupOf<Key>::Type;
    using Entry = std::pair<const Key, Value>;
    using Iterator = typename std::list<Entry>::iterator;
    using ConstIterator = typename std::list<Entry>::const_iterator;

    OrderedMap() = default;
    OrderedMap(const OrderedMap&) = delete;
    OrderedMap& operator=(const OrderedMap&) = delete;

    Iterator begin() { return entries_.begin(); }
    Iterator end() { return entries_.end(); }
    ConstIterator begin() const { return entries_.begin(); }
    ConstIterator end() const { return entries_.end(); }
    std::size_t size() const { return entries_.size(); }
    bool empty() const { return entries_.empty(); }

    bool contains(Lookup key) const { return index_.contains(key); }

    // The value of a key, or null; makes nothing.
    Value* find(Lookup key) {
        const auto it = index_.find(key);
        return it == index_.end() ? nullptr : &it->second->second;
    }
    const Value* find(Lookup key) const {
        const auto it = index_.find(key);
        return it == index_.end() ? nullptr : &it->second->second;
    }

    // The value of a key; a missing key is appended with an empty value.
    Value& operator[](Lookup key) {
        if (Value* value = find(key)) return *value;
        entries_.emplace_back(std::piecewise_construct, std::forward_as_tuple(key),
                              std::forward_as_tuple());
        const Iterator it = std::prev(entries_.end());
        index_.emplace(Lookup(it->first), it);
        return it->second;
    }

    bool erase(Lookup key) {
        const auto it = index_.find(key);
        if (it == index_.end()) return false;
        const Iterator entry = it->second;
        index_.erase(it);
        entries_.erase(entry);
        return true;
    }

    void clear() {
        index_.clear();
        entries_.clear();
    }

  private:
    std::list<Entry> entries_;
    std::unordered_map<Lookup, Iterator> index_;  // text keys view the entries' own strings
};
