#include "colorio/color_io_manager.h"
#include "tool/settings/record_list.h"
#include "tool/settings/remove_command.h"
#include "tool/settings/space_command.h"

namespace tool {

namespace {

class SpaceRemoveCommand : public RemoveCommand {
public:
    explicit SpaceRemoveCommand(CLI::App& program)
        : RemoveCommand(program, {"Remove one of your own colour spaces", "name", "Colour space to remove",
                                  "  colorio space remove film"}) {}

private:
    void remove(const std::string& name) override {
        ColorIOManager& manager = *ColorIOManager::get_instance();
        manager.set_tavelion_config(remove_record(manager.get_tavelion_color_spaces(), name, "colour space"));
    }
};

} // namespace

std::unique_ptr<Command> make_space_remove_command(CLI::App& program) {
    return std::make_unique<SpaceRemoveCommand>(program);
}

} // namespace tool
