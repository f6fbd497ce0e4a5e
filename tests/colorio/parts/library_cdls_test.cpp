#include "colorio/cdl/library_cdls.h"

#include <random>
#include <string>

#include <gmock/gmock.h>

namespace {

using Def = ColorIOManager::ColorDecisionListDef;
using List = CoreVector<Def>;

Def record(const std::string& name, const std::string& file, const std::string& id) {
    Def def{};
    def.name = name.c_str();
    def.file = file.c_str();
    def.cccid = id.c_str();
    return def;
}

/// Letters are ids in one file; names identify positions.
List list_of(const std::string& ids) {
    List list;
    for (std::size_t i = 0; i < ids.size(); ++i)
        list.append(record(std::to_string(i), "l.ccc", std::string(1, ids[i])));
    return list;
}

std::string names_of(const List& list) {
    std::string names;
    for (const Def& def : list)
        names += std::string(def.name.view()) + " ";
    return names;
}

/// The reference for the removal: for each record of the library a scan that shifts the later records down
/// and goes on at the next position.
void remove_by_scanning(const List& library, List& list) {
    for (const Def& removed : library) {
        for (unsigned int i = 0; i < list.get_count(); ++i) {
            if (!(list[i].file == removed.file && list[i].cccid == removed.cccid))
                continue;
            List shorter;
            for (unsigned int k = 0; k < list.get_count(); ++k)
                if (k != i)
                    shorter.append(list[k]);
            list = shorter;
        }
    }
}

TEST(KnownCDLs, AreToldApartByFileAndId) {
    List list;
    list.append(record("a", "one.ccc", "x"));
    const KnownCDLs known(list);
    EXPECT_TRUE(known.contains(record("another name", "one.ccc", "x")));
    EXPECT_FALSE(known.contains(record("a", "one.ccc", "y")));
    EXPECT_FALSE(known.contains(record("a", "two.ccc", "x")));
    EXPECT_FALSE(known.contains(record("a", "one.cccx", "")));
}

TEST(LibraryCDLs, LeaveTheSecondOfTwoAdjacentMatches) {
    List list = list_of("axxb");
    remove_library_CDLs(list_of("x"), list);
    EXPECT_EQ(names_of(list), "0 2 3 ");
}

TEST(LibraryCDLs, AreRemovedAsAScanRemovesThem) {
    std::mt19937 random(4711);
    for (int run = 0; run < 500; ++run) {
        std::string ids, library;
        for (unsigned int count = random() % 12; count > 0; --count)
            ids += static_cast<char>('a' + random() % 3);
        for (unsigned int count = random() % 6; count > 0; --count)
            library += static_cast<char>('a' + random() % 4);
        List fast = list_of(ids), scanned = list_of(ids);
        remove_library_CDLs(list_of(library), fast);
        remove_by_scanning(list_of(library), scanned);
        ASSERT_EQ(names_of(fast), names_of(scanned)) << ids << " without " << library;
    }
}

} // namespace
