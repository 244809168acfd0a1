#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "base/export.h"
#include "base/result.h"
#include "command/question.h"

namespace torva::command {

/// Where answers come from and messages go: a script, a terminal, the window.
class TORVA_API InputSource {
 public:
  virtual ~InputSource();

  enum class Kind {
    line,       ///< One line of text was read, without its end.
    interrupt,  ///< The user cancelled (^C, Esc).
    end,        ///< Nothing more will come.
    failure,    ///< Reading failed; `text` says why. Nothing more will come.
  };
  struct Line {
    Kind kind = Kind::end;
    std::wstring text = {};
    std::size_t number = 0;  ///< Line number in the source, from 1; 0 when it has none.
  };
  /// The next line. May show the question and wait.
  virtual Line next(const Question& question) = 0;
  /// Name for messages: the script's path; empty for a terminal.
  virtual std::string name() const = 0;
  /// Whether the prompts and answers have to be printed for the reader to see them (scripts), or are seen already
  /// (terminal).
  virtual bool echoes() const = 0;
};

/// A script: UTF-8 text from a file, a pipe or memory. Lines end with LF or CR LF; a byte order mark in front is passed
/// over. Files are read as they are needed.
class TORVA_API ScriptSource final : public InputSource {
 public:
  /// A line may have so many bytes; a longer one is a failure.
  static constexpr std::size_t kLongestLine = std::size_t{1} << 20;

  /// @return fileNotFound, fileNotReadable or isDirectory
  static Result<std::unique_ptr<ScriptSource>> open(const std::string& path);
  /// A script in memory. `name` is used in messages.
  static std::unique_ptr<ScriptSource> fromText(std::string text, std::string name);
  /// The program's standard input, which stays open.
  static std::unique_ptr<ScriptSource> standardInput();
  ~ScriptSource() override;

  Line next(const Question& question) override;
  std::string name() const override { return m_name; }
  bool echoes() const override { return true; }

 private:
  ScriptSource(int file, std::string text, std::string name);
  enum class Read { line, end, tooLong, error };
  Read readLine(std::string& line);
  Read readMore();

  int m_file;            // -1 for a script in memory, and after the end
  std::string m_buffer;  // what was read; the lines up to m_position are done
  std::size_t m_position = 0;
  std::string m_name;
  std::size_t m_lineNumber = 0;
};

}  // namespace torva::command
