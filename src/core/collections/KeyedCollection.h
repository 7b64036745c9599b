#pragma once
// The ordered keyed collection every list class of the library is built on: items keep
// insertion order and are numbered from 1; an item may carry a text key, unique within
// the collection and compared without regard to case; lookup by key is O(1).
//
// Failures are the automation runtime's: an unknown key is error 5, a position outside
// 1 to Count error 9, a key already present error 457.
#include "core/runtime/Errors.h"
#include "core/runtime/Text.h"
#include "core/runtime/Variant.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vx {

// What a host passed as an Index: a text is a key, anything else a position.
struct CollectionIndex {
    bool byKey = false;
    std::wstring key;
    long position = 0;
};
CollectionIndex readCollectionIndex(const VARIANT& index);

template <class T>
class KeyedCollection {
public:
    long count() const noexcept { return static_cast<long>(items_.size()); }

    void add(T value) { items_.push_back(std::make_unique<Entry>(Entry{std::move(value), {}, false})); }

    // An addition that fails (a key in use, or no memory) leaves the collection as it was.
    void add(T value, std::wstring_view key) {
        // The index refers to the entry's own copy of the folded key, which lives as long
        // as the entry (entries never move): one copy of each key, and one lookup for the
        // check and the insert.
        items_.push_back(std::make_unique<Entry>(Entry{std::move(value), foldCase(key), true}));
        Entry* entry = items_.back().get();
        bool added = false;
        try {
            added = byKey_.emplace(std::wstring_view(entry->foldedKey), entry).second;
        } catch (...) {
            items_.pop_back();
            throw;
        }
        if (!added) {
            items_.pop_back();
            raise(err::DuplicateKey);
        }
    }

    const T& at(long position) const { return items_[slot(position)]->value; }

    const T& find(std::wstring_view key) const {
        auto it = byKey_.find(foldCase(key));
        if (it == byKey_.end()) raise(err::InvalidCall);
        return it->second->value;
    }

    bool contains(std::wstring_view key) const { return byKey_.count(foldCase(key)) != 0; }

    const T& item(const VARIANT& index) const {
        CollectionIndex i = readCollectionIndex(index);
        return i.byKey ? find(i.key) : at(i.position);
    }

    void removeAt(long position) { erase(slot(position)); }

    void remove(const VARIANT& index) {
        CollectionIndex i = readCollectionIndex(index);
        if (!i.byKey) return removeAt(i.position);
        auto it = byKey_.find(foldCase(i.key));
        if (it == byKey_.end()) raise(err::InvalidCall);
        const Entry* entry = it->second;
        auto pos = std::find_if(items_.begin(), items_.end(), [entry](const auto& e) { return e.get() == entry; });
        erase(static_cast<size_t>(pos - items_.begin()));
    }

    // Empties the collection. The items are released only once the collection is
    // consistent again, so that an item's release may safely call back into it.
    void clear() noexcept {
        auto items = std::move(items_);
        auto keys = std::move(byKey_);
        items_.clear();
        byKey_.clear();
    }

private:
    struct Entry {
        T value;
        std::wstring foldedKey;
        bool hasKey;
    };

    size_t slot(long position) const {
        if (position < 1 || position > count()) raise(err::SubscriptOutOfRange);
        return static_cast<size_t>(position - 1);
    }

    void erase(size_t slot) {
        std::unique_ptr<Entry> gone = std::move(items_[slot]);
        items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(slot));
        if (gone->hasKey) byKey_.erase(gone->foldedKey);
    }  // the item is released here, with the collection already consistent

    std::vector<std::unique_ptr<Entry>> items_;
    std::unordered_map<std::wstring_view, Entry*> byKey_;
};

}  // namespace vx
