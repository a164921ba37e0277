// Scripts, expressions and statements from standard input, as text or JSON; see modes.h.
#include <unistd.h>

#include <new>

#include "vexil/language/lexer.h"
#include "vexil/shell/json.h"
#include "vexil/shell/lines.h"
#include "vexil/shell/modes.h"
#include "vexil/shell/output.h"

namespace vexil {

namespace {

/// Runs texts and shows what comes of their statements, in one form or the other.
class Worker {
 public:
  virtual ~Worker() = default;
  /// place is "" or the name of the script.
  virtual bool run(std::string_view text, const std::string& place) = 0;
  /// Says that there was no memory for a statement.
  virtual void refuse() = 0;
  bool failed() const { return failed_; }

 protected:
  bool failed_ = false;
};

class TextWorker : public Worker {
 public:
  TextWorker(Session& session, int info_level) : session_(session) {
    session_.set_sink(text_sink(info_level));
  }

  // A script ends with its first error, standard input goes on.
  bool run(std::string_view text, const std::string& place) override {
    return session_.run_text(text, render_text, [&](const Outcome& outcome) {
      standard_output().write(outcome.value);
      if (!outcome.error) return true;
      failed_ = true;
      print_failure(*outcome.error, place, outcome.line);
      return place.empty();
    });
  }

  void refuse() override {
    failed_ = true;
    print_error("error: out of memory");
  }

 private:
  Session& session_;
};

// The objects of an error are values like others, but may be too deep or large to be written.
std::string json_arguments(const HostError& error) {
  std::string out = "[";
  try {
    for (std::size_t i = 0; i < error.objects.size(); ++i) {
      if (i > 0) out += ", ";
      append_json(out, error.objects[i] != 0 ? error.objects[i] : make_sequence({}));
    }
  } catch (const HostError&) {
    return "[]";
  }
  return out + ']';
}

class JsonWorker : public Worker {
 public:
  explicit JsonWorker(Session& session) : session_(session) {
    session_.set_sink({[this](std::string_view text) { printed_ += text; },
                       [this](int, std::string_view line) { infos_.emplace_back(line); }});
  }

  bool run(std::string_view text, const std::string& /*place*/) override {
    const Render render = [](Object value, bool) {
      std::string out;
      append_json(out, value);
      return out;
    };
    return session_.run_text(text, render, [this](const Outcome& outcome) {
      failed_ = failed_ || outcome.error;
      try {
        write_line(line_of(outcome));
      } catch (const std::bad_alloc&) {
        refuse();
      }
      printed_ = {};
      infos_ = {};
      return true;
    });
  }

  void refuse() override {
    failed_ = true;
    write_line(R"({"error": "out of memory", "format": "out of memory", "args": []})"
               "\n");
  }

 private:
  static void write_line(std::string_view line) {
    standard_output().write(line);
    standard_output().flush();
  }

  std::string line_of(const Outcome& outcome) const {
    std::string line = "{";
    if (outcome.error) {
      append_member(line, "error", message_of(*outcome.error));
      append_member(line, "format", outcome.error->format);
      line += R"(, "args": )" + json_arguments(*outcome.error);
    } else {
      line += R"("value": )" + outcome.value;
    }
    if (!printed_.empty()) append_member(line, "output", printed_);
    if (!infos_.empty()) append_infos(line);
    return line += "}\n";
  }

  static void append_member(std::string& line, const char* key, std::string_view text) {
    if (line.size() > 1) line += ", ";
    line.append("\"").append(key).append("\": ");
    append_json_string(line, text);
  }

  void append_infos(std::string& line) const {
    line += R"(, "info": [)";
    for (std::size_t i = 0; i < infos_.size(); ++i) {
      if (i > 0) line += ", ";
      append_json_string(line, infos_[i]);
    }
    line += ']';
  }

  Session& session_;
  std::string printed_;
  std::vector<std::string> infos_;
};

// Statements run as soon as they are whole; in JSON each line is.
class StatementReader {
 public:
  StatementReader(Worker& worker, bool json) : worker_(worker), json_(json) {}

  void run() {
    while (take_line()) {
    }
    if (!statement_.empty()) worker_.run(statement_, "");
  }

 private:
  // False at the end of the input. A line that there is no memory for ends its statement.
  bool take_line() {
    try {
      std::string_view line;
      if (!input_.next(line)) return false;
      statement_.append(line) += '\n';
      scanner_.feed(std::string_view(statement_).substr(statement_.size() - line.size() - 1));
      if (scanner_.is_open() && !json_) return true;
      worker_.run(statement_, "");
    } catch (const std::bad_alloc&) {
      statement_ = {};
      input_.skip_line();
      worker_.refuse();
    }
    standard_output().flush();
    statement_.clear();
    scanner_ = OpenScanner();
    return true;
  }

  Worker& worker_;
  bool json_;
  LineReader input_{"-"};
  std::string statement_;
  OpenScanner scanner_;
};

}  // namespace

std::string load_file(const std::string& path) {
  FileReader reader(path);
  std::string bytes;
  for (std::string_view block; reader.next(block);) bytes += block;
  return bytes;
}

Sink text_sink(int info_level) {
  const bool is_watched = isatty(STDOUT_FILENO) != 0;
  return {[is_watched](std::string_view text) {
            standard_output().write(text);
            if (is_watched) standard_output().flush();
          },
          [info_level](int level, std::string_view line) {
            if (level <= info_level) print_error(line);
          }};
}

int run_work(Session& session, const Work& work) {
  std::unique_ptr<Worker> worker;
  if (work.json) {
    worker = std::make_unique<JsonWorker>(session);
  } else {
    worker = std::make_unique<TextWorker>(session, work.info_level);
  }
  for (const std::string& expression : work.expressions) {
    worker->run(expression, "");
    if (worker->failed() && !work.json) return 1;
  }
  if (!work.script.empty()) worker->run(load_file(work.script), work.script);
  const bool failed = worker->failed();
  const bool is_idle = work.expressions.empty() && work.script.empty();
  if (is_idle || work.reads_input) StatementReader(*worker, work.json).run();
  return failed ? 1 : 0;
}

}  // namespace vexil
