#include "image/data_names.h"

#include <algorithm>

#include <OpenImageIO/strutil.h>

namespace image {

namespace {

using Words = std::vector<std::string>;

constexpr char CRYPTOMATTE_PREFIX[] = "cryptomatte/";
constexpr char CRYPTOMATTE_NAME[] = "/name";
/// Of words in the names of cryptomattes.
constexpr char CRYPTO[] = "crypto";

/// What data is called, in lower case.
constexpr const char* DATA_WORDS[] = {"normal",
                                      "normals",
                                      "nxyz",
                                      "ns",
                                      "position",
                                      "positions",
                                      "pos",
                                      "wpos",
                                      "pcam",
                                      "pwp",
                                      "point",
                                      "points",
                                      "depth",
                                      "zdepth",
                                      "motion",
                                      "motionvector",
                                      "motionvectors",
                                      "motionvec",
                                      "velocity",
                                      "vel",
                                      "speed",
                                      "vector",
                                      "vectors",
                                      "disparity",
                                      "uv",
                                      "uvs",
                                      "uvw",
                                      "texcoord",
                                      "texcoords",
                                      "barycentric",
                                      "barycentrics",
                                      "st",
                                      "id",
                                      "ids",
                                      "objectid",
                                      "materialid",
                                      "matid",
                                      "primid",
                                      "meshid",
                                      "nodeid",
                                      "index",
                                      "matte",
                                      "mattes",
                                      "mask",
                                      "masks",
                                      "rgbmatte",
                                      "bmatte",
                                      "holdout",
                                      "coverage",
                                      "alpha",
                                      "samples",
                                      "variance",
                                      "bump",
                                      "multimatte",
                                      "puzzlematte",
                                      "tangent",
                                      "tangents",
                                      "bitangent",
                                      "pref",
                                      "nref",
                                      "pworld",
                                      "nworld",
                                      "worldpoint",
                                      "wpp",
                                      "mv",
                                      "mvs",
                                      "pw",
                                      "dpdu",
                                      "dpdv",
                                      "stmap",
                                      "uvmap",
                                      "flow",
                                      "opticalflow",
                                      "opticalflows",
                                      "normalmap",
                                      "normalmaps",
                                      "positionmap",
                                      "depthmap",
                                      "tangentnormal",
                                      "tangentnormals",
                                      "worldnormal",
                                      "worldnormals",
                                      "worldpos",
                                      "worldposition",
                                      "objectnormal",
                                      "cameranormal",
                                      "bumpnormal",
                                      "bumpnormals"};
/// What data is called in two words.
constexpr const char* DATA_PAIRS[][2] = {
    {"matte", "element"}, {"sampler", "info"}, {"sample", "count"}, {"d", "pdu"}, {"d", "pdv"}};
/// What data is called when nothing else is in the name.
constexpr const char* DATA_LETTERS[] = {"n", "p", "z", "nn", "ng", "pz"};
/// What may follow without changing what it is.
constexpr const char* QUALIFIERS[] = {
    "pass",  "aov",    "raw",      "world",      "camera",     "cam",         "view",     "screen", "object",
    "space", "smooth", "filtered", "unfiltered", "worldspace", "cameraspace", "map",      "d",      "eye",
    "out",   "w",      "x",        "y",          "z",          "forward",     "backward", "fwd",    "bwd",
    "left",  "right",  "l",        "r"};
/// What may stand before a single letter: render outputs, and those by light path expressions.
constexpr const char* OUTPUT_PREFIXES[] = {"aov", "lpe"};

template <std::size_t COUNT>
bool contains(const char* const (&list)[COUNT], const std::string& word) {
    return std::find(std::begin(list), std::end(list), word) != std::end(list);
}

bool is_upper(char c) {
    return c >= 'A' && c <= 'Z';
}
bool is_lower(char c) {
    return c >= 'a' && c <= 'z';
}

/// True between "l" and "R" of "normalRaw", and between "Z" and "D" of "ZDepth".
bool starts_word(std::string_view text, std::size_t i) {
    if (i == 0 || !is_upper(text[i]))
        return false;
    return is_lower(text[i - 1]) || (is_upper(text[i - 1]) && i + 1 < text.size() && is_lower(text[i + 1]));
}

/// The words in lower case; digits and other characters separate them.
Words split_words(std::string_view text) {
    Words words;
    bool is_open = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (!is_upper(text[i]) && !is_lower(text[i])) {
            is_open = false;
            continue;
        }
        if (!is_open || starts_word(text, i))
            words.emplace_back();
        is_open = true;
        words.back() += OIIO::Strutil::lower(text.substr(i, 1));
    }
    return words;
}

/// True for the name "N1", but not for "n1": lower case with a number counts shots and versions.
bool has_digits_after_lower_case(std::string_view text) {
    const bool has_digits =
        std::any_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
    return has_digits && std::none_of(text.begin(), text.end(), is_upper);
}

bool ends_with_pair(const Words& words) {
    return words.size() > 1 && std::any_of(std::begin(DATA_PAIRS), std::end(DATA_PAIRS), [&](auto& pair) {
               return words[words.size() - 2] == pair[0] && words.back() == pair[1];
           });
}

/// `text` is a part of a name between dots.
bool is_data(std::string_view text) {
    Words words = split_words(text);
    if (words.empty())
        return false;
    if (std::any_of(words.begin(), words.end(),
                    [](const std::string& word) { return word.rfind(CRYPTO, 0) == 0; }))
        return true;
    if (ends_with_pair(words))
        return true;
    while (words.size() > 1 && contains(QUALIFIERS, words.back()))
        words.pop_back();
    if (contains(DATA_WORDS, words.back()))
        return true;
    if (words.size() > 1 && contains(OUTPUT_PREFIXES, words.front()))
        words.erase(words.begin());
    return words.size() == 1 && contains(DATA_LETTERS, words.back()) && !has_digits_after_lower_case(text);
}

} // namespace

bool is_data_name(std::string_view name) {
    for (const OIIO::string_view& part :
         OIIO::Strutil::splitsv(OIIO::string_view(name.data(), name.size()), "."))
        if (is_data(std::string_view(part.data(), part.size())))
            return true;
    return false;
}

std::vector<std::string> get_cryptomatte_names(const OIIO::ImageSpec& spec) {
    std::vector<std::string> names;
    for (const OIIO::ParamValue& attribute : spec.extra_attribs) {
        const std::string key = attribute.name().string();
        if (OIIO::Strutil::starts_with(key, CRYPTOMATTE_PREFIX) &&
            OIIO::Strutil::ends_with(key, CRYPTOMATTE_NAME) && !attribute.get_string().empty())
            names.push_back(attribute.get_string());
    }
    return names;
}

bool belongs_to_cryptomatte(std::string_view layer, std::string_view cryptomatte) {
    if (layer.substr(0, cryptomatte.size()) != cryptomatte)
        return false;
    const std::string_view rest = layer.substr(cryptomatte.size());
    return std::all_of(rest.begin(), rest.end(), [](char c) { return c >= '0' && c <= '9'; });
}

} // namespace image
