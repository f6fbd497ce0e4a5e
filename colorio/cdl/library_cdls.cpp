#include "colorio/cdl/library_cdls.h"

#include <unordered_map>
#include <vector>

#include "colorio/color_io_constants.h"

namespace {

using ColorDecisionListDef = ColorIOManager::ColorDecisionListDef;

/// A file path contains no NUL, so it ends at the first one.
std::string get_key(const ColorDecisionListDef& def) {
    return std::string(def.file.view()) + '\0' + std::string(def.cccid.view());
}

/// The positions of a list, linked so that single ones can be removed.
class PositionChain {
public:
    explicit PositionChain(unsigned int count) : next(count), previous(count), removed(count, false) {
        for (unsigned int i = 0; i < count; ++i) {
            previous[i] = i == 0 ? NOT_FOUND : i - 1;
            next[i] = i + 1 == count ? NOT_FOUND : i + 1;
        }
    }

    bool is_removed(unsigned int position) const { return removed[position]; }
    unsigned int get_next(unsigned int position) const { return next[position]; }

    void remove(unsigned int position) {
        removed[position] = true;
        if (previous[position] != NOT_FOUND)
            next[previous[position]] = next[position];
        if (next[position] != NOT_FOUND)
            previous[next[position]] = previous[position];
    }

private:
    std::vector<unsigned int> next;
    std::vector<unsigned int> previous;
    std::vector<bool> removed;
};

/// One scan: removes every position except those that moved into the place of the one just removed.
/// `positions` keeps the remaining ones.
void scan(std::vector<unsigned int>& positions, PositionChain& chain) {
    std::vector<unsigned int> staying;
    unsigned int skipped = NOT_FOUND;
    for (const unsigned int position : positions) {
        if (position == skipped) {
            staying.push_back(position);
            continue;
        }
        skipped = chain.get_next(position);
        chain.remove(position);
    }
    positions.swap(staying);
}

} // namespace

KnownCDLs::KnownCDLs(const CoreVector<ColorDecisionListDef>& list) {
    for (const ColorDecisionListDef& def : list)
        keys.insert(get_key(def));
}

bool KnownCDLs::contains(const ColorDecisionListDef& def) const {
    return keys.count(get_key(def)) != 0;
}

void remove_library_CDLs(const CoreVector<ColorDecisionListDef>& library,
                         CoreVector<ColorDecisionListDef>& list) {
    std::unordered_map<std::string, std::vector<unsigned int>> positions;
    for (unsigned int i = 0; i < list.get_count(); ++i)
        positions[get_key(list[i])].push_back(i);

    PositionChain chain(list.get_count());
    for (const ColorDecisionListDef& def : library) {
        const auto matches = positions.find(get_key(def));
        if (matches != positions.end())
            scan(matches->second, chain);
    }

    CoreVector<ColorDecisionListDef> remaining;
    for (unsigned int i = 0; i < list.get_count(); ++i)
        if (!chain.is_removed(i))
            remaining.append(list[i]);
    list.swap(remaining);
}
