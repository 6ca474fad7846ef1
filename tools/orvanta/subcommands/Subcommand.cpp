#include "subcommands/Subcommand.h"

#include <algorithm>
#include <utility>

#include "terminal/Messages.h"

namespace OrvantaNS::command {

Subcommand::Subcommand(std::string name, std::string description, std::string examples)
    : name_(std::move(name)), description_(std::move(description)), examples_(std::move(examples)) {}

void Subcommand::addTo(CLI::App& root) {
    app_ = root.add_subcommand(name_, description_);
    const bool several = std::count(examples_.begin(), examples_.end(), '\n') > 0;
    app_->footer((several ? "Examples:\n" : "Example:\n") + examples_);
    addOptions(*app_);
    app_->add_flag("-q,--quiet", quiet_, "No warnings, notes and progress; errors are told all the same");
    app_->add_flag("--no-progress", noProgress_, "No progress bar");
    app_->add_option("--messages", messages_,
                     "Messages on the standard error as text, or as json, an object a line (default: as the result is)")
        ->type_name("FORM")
        ->check(CLI::IsMember({"text", "json"}));
}

ExitStatus Subcommand::execute() {
    messageStyle() = {quiet_, messages_.empty() ? speaksJson() : messages_ == "json", !noProgress_};
    return run();
}

} // namespace OrvantaNS::command
