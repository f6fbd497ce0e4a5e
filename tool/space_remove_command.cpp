#include "colorio/color_io_manager.h"
#include "tool/record_list.h"
#include "tool/remove_command.h"
#include "tool/space_command.h"

namespace tool {

namespace {

class SpaceRemoveCommand : public RemoveCommand {
public:
    explicit SpaceRemoveCommand(Options& program)
        : RemoveCommand(program, {"Remove a custom color space", "name", "color space to remove",
                                  "  colorio space remove film"}) {}

private:
    void remove(const std::string& name) override {
        ColorIOManager& manager = *ColorIOManager::get_instance();
        manager.set_tavelion_config(remove_record(manager.get_tavelion_color_spaces(), name, "color space"));
    }
};

} // namespace

std::unique_ptr<Command> make_space_remove_command(Options& program) {
    return std::make_unique<SpaceRemoveCommand>(program);
}

} // namespace tool
