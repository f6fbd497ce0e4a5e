#include <atomic>
#include <thread>

#include "conformance/app_fixture.h"
#include "conformance/check.h"
#include "host/core/core_log.h"
#include "host/of/of_enum.h"

namespace conformance {

namespace {

constexpr unsigned int THREADS = 4;
constexpr unsigned int ROUNDS = 3000;

/// Runs `is_wrong(number)` many times in several threads at once, with other numbers in each; the count of
/// true results.
template <class Question>
unsigned int count_wrong(Question is_wrong) {
    std::atomic<unsigned int> wrong{0}, waiting{THREADS};
    std::vector<std::thread> threads;
    for (unsigned int thread = 0; thread < THREADS; ++thread)
        threads.emplace_back([&, thread] {
            --waiting;
            while (waiting > 0)
                std::this_thread::yield();
            for (unsigned int round = 0; round < ROUNDS; ++round)
                wrong += is_wrong(thread + THREADS * round) ? 1 : 0;
        });
    for (std::thread& thread : threads)
        thread.join();
    return wrong;
}

class LastMessage : public CoreLogHandler {
public:
    void log(unsigned int, const CoreLogStream& stream) override {
        get_text() = stream.get_text().get_data();
    }
    /// Of the calling thread.
    static std::string& get_text() {
        static thread_local std::string text;
        return text;
    }
};

void check_log(Findings& findings) {
    LastMessage handler;
    CoreLogHandler::set_main_log_handler(&handler);
    const unsigned int wrong = count_wrong([](unsigned int number) {
        CoreLogStream stream("");
        stream << "image " << number << CoreString(" not converted\n");
        CoreLogHandler::get_main_log_handler().log(LOG_ERROR, stream);
        return LastMessage::get_text() != "image " + std::to_string(number) + " not converted\n";
    });
    CoreLogHandler::set_main_log_handler(nullptr);
    findings.expect_number(wrong, 0, "the wrong messages of " + std::to_string(THREADS) + " threads");
}

void check_lookups(Findings& findings) {
    constexpr unsigned int LABELS = 500;
    AppFixture app;
    OfEnum& list = app.add_enum("conformance_list");
    for (unsigned int i = 0; i < LABELS; ++i)
        list.add_value(CoreString(("space " + std::to_string(i)).c_str()), i);
    const OfObjectFactory& factory = app.get().get_object_factory();
    const unsigned int wrong = count_wrong([&](unsigned int number) {
        const unsigned int index = number % LABELS;
        const CoreString label(("space " + std::to_string(index)).c_str());
        const OfEnum* const found = factory.get_enum(CoreString("conformance_list"));
        return found != &list || found->find_label_index(label) != index ||
               found->get_value(label) != index || found->get_label(index) != label;
    });
    findings.expect_number(wrong, 0, "the wrong look-ups of " + std::to_string(THREADS) + " threads");
}

} // namespace

Checks list_thread_checks() {
    return {
        {"threads.log", "several threads may make messages and pass them to the main handler",
         "errors of images that are converted in several threads crash or are mixed", check_log},
        {"threads.look-ups", "several threads may look up names in an enumeration that does not change",
         "converters that several threads configure at once convert from wrong color spaces", check_lookups},
    };
}

} // namespace conformance
