// The commands' pages and lists. Entry points: help_text, list_text. Tests:
// tests/shell/shell_test.py.
#pragma once

#include <string>
#include <string_view>

namespace vexil {

/// Tells where a module was loaded from: its pages lie beside it.
void add_page_folders(const std::string& module_path);

/// The section of the page that describes a command; for "" how to get help. Raises an error when
/// there is no such command.
std::string help_text(std::string_view name);

/// The commands with their synopses and summaries, family by family; "" for all families. Raises an
/// error when there is no such family.
std::string list_text(std::string_view family);

}  // namespace vexil
