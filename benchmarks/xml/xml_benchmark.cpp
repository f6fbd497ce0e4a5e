// The library next to two widely used ones, on the same text in the same run. Every round times each of them
// once, so that a change of the machine's speed affects all equally; the counters are ratios of the medians.

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>
#include <malloc.h>
#include <pugixml.hpp>
#include <tinyxml2.h>

#include "benchmarks/xml/collection.h"
#include "xml/xml_node.h"

namespace {

constexpr int ROUNDS = 15;

double seconds_now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

std::size_t bytes_in_use() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

double median(std::vector<double> values) {
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2),
                     values.end());
    return values[values.size() / 2];
}

struct Timings {
    std::vector<double> parse;
    std::vector<double> release;
    std::vector<double> total;
    std::size_t bytes = 0;
};

// One parse, which returns an owner of the tree, and one release of that owner.
template <class Parse>
void time_once(Timings& timings, const Parse& parse) {
    const std::size_t before = bytes_in_use();
    const double start = seconds_now();
    auto tree = parse();
    const double parsed = seconds_now();
    timings.bytes = bytes_in_use() - before;
    const double release_start = seconds_now();
    { const auto released = std::move(tree); }
    const double released = seconds_now();
    timings.parse.push_back(parsed - start);
    timings.release.push_back(released - release_start);
    timings.total.push_back(parsed - start + released - release_start);
}

XmlNode parse_here(const std::string& text) {
    XmlNode top = XmlNode::parse_string(text.c_str());
    if (top.is_empty())
        std::abort();
    return top;
}

std::unique_ptr<tinyxml2::XMLDocument> parse_with_tinyxml2(const std::string& text) {
    auto document = std::make_unique<tinyxml2::XMLDocument>();
    if (document->Parse(text.data(), text.size()) != tinyxml2::XML_SUCCESS)
        std::abort();
    return document;
}

std::unique_ptr<pugi::xml_document> parse_with_pugixml(const std::string& text) {
    auto document = std::make_unique<pugi::xml_document>();
    if (!document->load_buffer(text.data(), text.size()))
        std::abort();
    return document;
}

void ParseAndReleaseBesidePeers(benchmark::State& state) {
    const int corrections = static_cast<int>(state.range(0));
    const std::string text = make_collection(corrections);
    const double elements = static_cast<double>(corrections) * ELEMENTS_PER_CORRECTION + 1;
    Timings here;
    Timings tinyxml2_timings;
    Timings pugixml_timings;
    for (auto _ : state) {
        time_once(here, [&] { return parse_here(text); });
        time_once(tinyxml2_timings, [&] { return parse_with_tinyxml2(text); });
        time_once(pugixml_timings, [&] { return parse_with_pugixml(text); });
        state.SetIterationTime(here.total.back());
    }
    state.counters["ms"] = 1000 * median(here.total);
    state.counters["to_tinyxml2"] = median(here.total) / median(tinyxml2_timings.total);
    state.counters["to_pugixml"] = median(here.total) / median(pugixml_timings.total);
    state.counters["release_to_parse"] = median(here.release) / median(here.parse);
    state.counters["bytes_per_element"] = static_cast<double>(here.bytes) / elements;
    state.counters["tinyxml2_bytes"] = static_cast<double>(tinyxml2_timings.bytes) / elements;
    state.counters["pugixml_bytes"] = static_cast<double>(pugixml_timings.bytes) / elements;
}
BENCHMARK(ParseAndReleaseBesidePeers)
    ->Arg(10000)
    ->Arg(200000)
    ->Iterations(ROUNDS)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

void WriteToText(benchmark::State& state) {
    const XmlNode top = parse_here(make_collection(static_cast<int>(state.range(0))));
    std::size_t length = 0;
    for (auto _ : state)
        length = top.create_string(0).size();
    state.SetBytesProcessed(static_cast<std::int64_t>(length) * state.iterations());
}
BENCHMARK(WriteToText)->Arg(10000)->Unit(benchmark::kMillisecond);

} // namespace
