#include "colorio/color_io_manager.h"
#include "tool/cdl_command.h"
#include "tool/record_list.h"
#include "tool/remove_command.h"

namespace tool {

namespace {

class CdlRemoveCommand : public RemoveCommand {
public:
    explicit CdlRemoveCommand(Options& program)
        : RemoveCommand(program, {"Remove a CDL from the preferences", "name", "CDL to remove",
                                  "  colorio cdl remove warm"}) {}

private:
    void remove(const std::string& name) override {
        ColorIOManager& manager = *ColorIOManager::get_instance();
        manager.set_tavelion_config(remove_record(manager.get_tavelion_color_decision_lists(), name, "CDL"));
    }
};

} // namespace

std::unique_ptr<Command> make_cdl_remove_command(Options& program) {
    return std::make_unique<CdlRemoveCommand>(program);
}

} // namespace tool
