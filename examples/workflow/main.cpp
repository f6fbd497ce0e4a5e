// Converts an image to a view, explains the conversion, and prints the diagnostic of a failure.
#include <iostream>

#include "image/reader_server.h"
#include "workflow/explanation.h"
#include "workflow/image_conversion.h"
#include "workflow/session.h"

int main(int argc, char** argv) {
    image::start_reader_server(); // before any thread is started
    if (argc != 5) {
        std::cerr << "usage: example_workflow CONFIG SPACE INPUT OUTPUT\n";
        return 2;
    }
    try {
        workflow::SessionOptions options;
        options.config_path = argv[1];
        const workflow::Session session(options);

        workflow::ConversionRequest request;
        request.from = argv[2];
        request.view = "Monitor.Film";
        const workflow::Conversion conversion(session, request);
        workflow::convert_image(conversion, argv[3], argv[4]);
        for (const workflow::ExplainedStage& stage :
             workflow::explain_conversion(conversion, {0.18f, 0.18f, 0.18f, 1}))
            for (const ColorIOEvaluation::Step& step : stage.how.steps)
                std::cout << stage.title << ": " << step.operation.get_data() << " -> " << step.pixel[0]
                          << '\n';
        return 0;
    } catch (const diagnostics::Failure& failure) {
        const diagnostics::Diagnostic& worst = failure.get_worst();
        std::cerr << get_name(worst.code) << ": " << worst.message << "; hint: " << worst.hint << '\n';
        return 1;
    }
}
