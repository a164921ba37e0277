// The commands' pages and lists; see pages.h.
#include "vexil/shell/pages.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <vector>

#include "vexil/language/builtins.h"
#include "vexil/language/lexer.h"
#include "vexil/services/services.h"

namespace vexil {

namespace {

namespace fs = std::filesystem;

std::vector<fs::path>& folders() {
  static std::vector<fs::path> all;
  return all;
}

// Whether a heading holds `name(`.
bool names_command(std::string_view heading, std::string_view name) {
  const std::string call = std::string(name) + '(';
  for (std::size_t at = heading.find(call); at != std::string_view::npos;
       at = heading.find(call, at + 1)) {
    if (at > 0 && !continues_name(heading[at - 1])) return true;
  }
  return false;
}

// From the heading that names the command to the next one.
std::string section_in(const fs::path& page, std::string_view name) {
  std::ifstream file(page);
  std::string section;
  bool is_wanted = false;
  bool is_fenced = false;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("```")) is_fenced = !is_fenced;
    if (!is_fenced && line.starts_with("#")) {
      if (is_wanted) break;
      is_wanted = line.starts_with("## ") && names_command(line, name);
    }
    if (is_wanted) section += line + '\n';
  }
  while (section.ends_with("\n\n")) section.pop_back();
  return section;
}

std::string section_of(const HostModuleCommand& command) {
  for (const fs::path& folder : folders()) {
    const fs::path page = folder / (std::string(command.family) + ".md");
    std::string section = section_in(page, command.name);
    if (!section.empty()) return section;
  }
  return {};
}

// "take(s, n) take(s, t)" with commas between the calls.
std::string join_synopses(std::string_view synopses) {
  std::string joined;
  int depth = 0;
  for (char c : synopses) {
    depth += c == '(' ? 1 : c == ')' ? -1 : 0;
    if (c == ' ' && depth == 0) joined += ',';
    joined += c;
  }
  return joined;
}

std::string row(std::string_view synopses, std::string_view summary) {
  std::string line = "  ";
  line += join_synopses(synopses);
  line.append(line.size() < 38 ? 38 - line.size() : 1, ' ');
  return line.append("  ").append(summary) += '\n';
}

std::string builtin_rows() {
  std::string rows = "built-ins\n";
  for (const Builtin& builtin : builtins()) rows += row(builtin.synopsis, builtin.summary);
  return rows;
}

constexpr std::string_view kGuide =
    "help(\"name\")   shows a command's page, for example help(\"search\")\n"
    "vexil list      lists all commands, family by family\n"
    "quit()          or Ctrl-D ends the program\n\n";

}  // namespace

void add_page_folders(const std::string& module_path) {
  std::error_code error;
  const fs::path folder = fs::canonical(module_path, error).parent_path();
  if (error) return;
  for (const char* up : {"..", "../.."}) {
    const fs::path pages = folder / up / "share/vstring/commands";
    if (fs::is_directory(pages, error)) folders().push_back(pages);
  }
}

std::string help_text(std::string_view name) {
  if (name.empty()) return std::string(kGuide) + builtin_rows();
  if (const HostModuleCommand* command = find_command(name)) {
    const std::string section = section_of(*command);
    return !section.empty() ? section : row(command->synopses, command->summary);
  }
  if (const Builtin* builtin = find_builtin(name)) {
    return std::string(builtin->synopsis) + "\n    " + builtin->summary + '\n';
  }
  raise_error("there is no command `%1'", {make_string(name)});
}

std::string list_text(std::string_view family) {
  std::vector<std::string_view> families;
  for (const HostModuleCommand& command : commands()) {
    if (std::find(families.begin(), families.end(), command.family) == families.end()) {
      families.emplace_back(command.family);
    }
  }
  std::string list;
  for (std::string_view wanted : families) {
    if (!family.empty() && family != wanted) continue;
    if (!list.empty()) list += '\n';
    list.append(wanted) += '\n';
    for (const HostModuleCommand& command : commands()) {
      if (command.family == wanted) list += row(command.synopses, command.summary);
    }
  }
  if (family.empty()) list.append("\n").append(builtin_rows());
  if (list.empty()) raise_error("there is no family `%1'", {make_string(family)});
  return list;
}

}  // namespace vexil
