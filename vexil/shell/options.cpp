// The command line; see options.h.
#include "vexil/shell/options.h"

#include <CLI/CLI.hpp>
#include <cctype>
#include <filesystem>
#include <iostream>
#include <map>

namespace vexil {

namespace {

constexpr std::size_t kMaxHeap = (std::size_t{1} << 31) - 1 + (std::size_t{1} << 31);

// "64M" and the like.
std::size_t parse_size(const std::string& text) {
  std::size_t digits = 0;
  const std::string wrong = "--heap: `" + text + "' is not a size such as 64M, below 4G";
  unsigned long long number = 0;
  try {
    number = std::stoull(text, &digits);
  } catch (const std::exception&) {
    throw CLI::ValidationError(wrong);
  }
  const std::string suffix = text.substr(digits);
  static const std::map<std::string, int> shifts = {{"", 0},   {"K", 10}, {"k", 10}, {"M", 20},
                                                    {"m", 20}, {"G", 30}, {"g", 30}};
  const auto shift = shifts.find(suffix);
  if (std::isdigit(static_cast<unsigned char>(text[0])) == 0 || shift == shifts.end() ||
      number == 0 || number > kMaxHeap >> shift->second) {
    throw CLI::ValidationError(wrong);
  }
  return static_cast<std::size_t>(number << shift->second);
}

void add_general_options(CLI::App& app, Options& options) {
  app.add_option("--module", options.modules, "a module to load; may be given again")
      ->type_name("PATH")
      ->expected(1)
      ->allow_extra_args(false)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  app.add_option_function<std::string>(
         "--heap", [&](const std::string& text) { options.heap_size = parse_size(text); },
         "the heap's limit, with K, M or G (default 1G)")
      ->type_name("SIZE");
  app.add_flag("--gc-stress", options.gc_stress, "collect at every safe point");
  app.add_option("--raise", options.raise_mode, "how errors leave a module: exception or longjmp")
      ->type_name("HOW")
      ->transform(CLI::CheckedTransformer(std::map<std::string, RaiseMode>{
          {"exception", RaiseMode::Exception}, {"longjmp", RaiseMode::Longjmp}}));
  app.add_option("--info", options.info_level, "show informational messages up to this level")
      ->type_name("N");
}

void add_work_options(CLI::App& app, Options& options) {
  app.add_option("-e", options.work.expressions, "evaluate an expression and print its value")
      ->type_name("EXPR")
      ->expected(1)
      ->allow_extra_args(false)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  app.add_flag("--json", options.work.json, "one JSON object for each statement");
}

void add_each(CLI::App& app, Options& options) {
  CLI::App* each = app.add_subcommand("each", "evaluate an expression for every line of the input");
  each->add_option("expression", options.each.expression, "sees the variables line and lineno")
      ->type_name("EXPR")
      ->required();
  each->add_option("files", options.each.files, "instead of standard input")->type_name("FILE");
  each->add_flag("--keep-going", options.each.keep_going, "go on after an error");
  each->callback([&options] { options.mode = Mode::Each; });
}

void add_other_modes(CLI::App& app, Options& options) {
  CLI::App* help = app.add_subcommand("help", "show a command's page");
  help->add_option("command", options.topic, "its name")->type_name("COMMAND");
  help->callback([&options] { options.mode = Mode::Help; });
  CLI::App* list = app.add_subcommand("list", "list the commands, family by family");
  list->add_option("family", options.topic, "only this one")->type_name("FAMILY");
  list->callback([&options] { options.mode = Mode::List; });
  CLI::App* check = app.add_subcommand("check", "run transcripts and compare");
  check->add_option("files", options.files, "pages (.md) or transcripts")
      ->type_name("FILE")
      ->required();
  check->callback([&options] { options.mode = Mode::Check; });
}

// What is left behind the options: a script and its arguments.
void take_script(const CLI::App& app, Options& options) {
  std::vector<std::string> rest = app.remaining(true);
  const bool are_options_over = !rest.empty() && rest[0] == "--";
  if (are_options_over) rest.erase(rest.begin());
  if (rest.empty()) return;
  const bool is_option = !are_options_over && rest[0].size() > 1 && rest[0][0] == '-';
  if (is_option || options.mode != Mode::Work) throw CLI::ExtrasError({rest[0]});
  options.work.reads_input = rest[0] == "-";
  if (!options.work.reads_input) options.work.script = rest[0];
  options.arguments.assign(rest.begin() + 1, rest.end());
}

}  // namespace

Options read_options(int argc, char** argv) {
  Options options;
  CLI::App app(
      "vexil [OPTIONS] [FILE [ARG ...]]: runs the script FILE, or statements from standard input.");
  app.set_version_flag("--version", "vexil " VEXIL_VERSION);
  app.prefix_command()->fallthrough()->require_subcommand(0, 1);
  add_general_options(app, options);
  add_work_options(app, options);
  add_each(app, options);
  add_other_modes(app, options);
  try {
    app.parse(argc, argv);
    take_script(app, options);
  } catch (const CLI::ParseError& error) {
    options.mode = Mode::Exit;
    options.exit_status = app.exit(error) == 0 ? 0 : 2;
    if (!std::cout.flush() && options.exit_status == 0) options.exit_status = 1;
  }
  return options;
}

std::string find_default_module() {
  namespace fs = std::filesystem;
  std::error_code error;
  const fs::path folder = fs::read_symlink("/proc/self/exe", error).parent_path();
  for (const fs::path& candidate : {folder, folder / "../lib", fs::path(VEXIL_MODULE_FOLDER)}) {
    if (fs::exists(candidate / "libvstring.so", error)) return candidate / "libvstring.so";
  }
  return {};
}

}  // namespace vexil
