#include "tool/hidden_commands.h"

#include "manual/completion_answer.h"
#include "manual/man_page.h"
#include "tool/console.h"
#include "tool/options.h"
#include "tool/versions.h"
#include "workflow/text_file.h"

namespace tool {

bool run_hidden_command(const std::vector<std::string>& arguments, const Options& options, Console& console) {
    if (arguments.empty())
        return false;
    if (arguments.front() == "__complete") {
        const std::string answer =
            manual::answer_completion(options.get_description(), {arguments.begin() + 1, arguments.end()});
        if (!answer.empty())
            console.print_text(answer.substr(0, answer.size() - 1));
        return true;
    }
    if (arguments.front() != "__man" || arguments.size() != 2)
        return false;
    for (const manual::ManPage& page :
         manual::make_man_pages(options.get_description(), "colorio " + get_version()))
        workflow::write_text_file(arguments.back() + "/" + page.name + ".1", page.text);
    return true;
}

} // namespace tool
