#pragma once

#include <string>
#include <variant>
#include <vector>

/// A script or command of the command line.
struct GivenInput {
  enum class Kind { script, command };
  Kind kind = Kind::script;
  std::string text;  ///< The script's path, or the command's text.
};

/// What torvac was started with.
struct Arguments {
  std::string drawing;             ///< Empty: a new one.
  std::vector<GivenInput> inputs;  ///< In the order given.
  std::string output;              ///< Empty: not saved.
  int widthPx = 1000, heightPx = 1000;
  std::vector<std::string> modules;
  std::string profileFolder;
  bool stopsOnError = false;
  bool recovers = false;
  bool keepsBackup = false;
};

/// Exit statuses of the program.
enum ExitStatus : int { kAllWell = 0, kFault = 1, kWrongUsage = 2 };

/// Reads the arguments. Gives the exit status instead when there is nothing to do: help and version are printed, wrong usage
/// is reported.
std::variant<Arguments, ExitStatus> parseArguments(int count, char** values);
