#pragma once

#include <map>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "tests/tool/tool_fixture.h"

/// Runs commands on the sample config of version 2.
class VersionTwoTest : public ToolTest {
protected:
    ToolRun run_on_sample(std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"--config", QB_TEST_CONFIG_FOLDER "/version_2/config.ocio"});
        return run(arguments);
    }

    nlohmann::json list_json() {
        const ToolRun result = run_on_sample({"list", "--json"});
        EXPECT_THAT(result, Succeeds());
        return nlohmann::json::parse(result.out);
    }

    /// The items of a list by what they hold under `key`.
    static std::map<std::string, nlohmann::json> by(const char* key, const nlohmann::json& list) {
        std::map<std::string, nlohmann::json> items;
        for (const nlohmann::json& item : list)
            items[item.at(key)] = item;
        return items;
    }

    ToolRun explain(const std::string& from, const std::string& to) {
        return run_on_sample({"explain", from, to});
    }
};
