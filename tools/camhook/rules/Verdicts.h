// What a decision makes of each row, of each override and of each input, in words.

#pragma once

#include <string>
#include <vector>

#include "tools/camhook/rules/Decision.h"

namespace camhook {

/// A column of the list that counts, as a row of it has it.
struct CellVerdict {
  const RuleColumn* column;
  std::string wanted;  // "16", "QQ"; "none" for the empty app type
  bool isCondition;    // else nothing is asked for, though a value that looks so would meet it
  bool isMet;
};

struct RowVerdict {
  std::vector<CellVerdict> cells;  // of all columns
  bool isTaken = false;
  std::string why;  // "taken by eis", "too late: row 1 was taken", "ui is absent"
};

std::vector<RowVerdict> rowVerdicts(const Decision& decision, const Inputs& inputs);

/// What an override asked, and what it saw: "APP_TYPE QQ", "aspect ratio 1.335".
struct ConditionVerdict {
  std::string found;
  std::string must;  // what else it must be: "be below 1.334"
  bool isMet;
};

struct OverrideVerdict {
  const hesk::Override* override;
  std::vector<ConditionVerdict> conditions;
  bool fires = false;
  bool holds = false;
  bool isNearMiss = false;  // app and modes are what it asks for, and all else but one thing

  /// "holds", "overwritten", "near miss" or "no".
  [[nodiscard]] const char* word() const;
};

std::vector<OverrideVerdict> overrideVerdicts(const RuleSet& rules, const Decision& decision,
                                              const Inputs& inputs);

/// Of a value that no rule and no override knows.
struct InputWarning {
  InputIndex input;
  std::string problem;
};

std::vector<InputWarning> inputWarnings(const RuleSet& rules, const Inputs& inputs);

/// The value that a rule has in a column: "16", "none" for the empty app type.
std::string wantedText(const RuleColumn& column, const SensorModeCfg& rule);

/// The input of a column as its field has it: "16", "15,30", "absent".
std::string foundText(const RuleColumn& column, const Inputs& inputs);

std::string baseText(const Decision& decision);
std::string resultText(const RuleSet& rules, const Decision& decision);

}  // namespace camhook
