#include <ostream>

#include "tools/camhook/rules/Proof.h"
#include "tools/camhook/rules/RulesCommand.h"

namespace camhook {
namespace {

/// The options of camhook decide that say so, but for product, sensor and kind of configuration.
std::string optionsText(const Inputs& inputs, bool withSensor) {
  const Inputs plain = plainInputs(inputs.product, inputs.sensor, inputs.video);
  std::string text;
  const auto add = [&](const std::string& words) { text += (text.empty() ? "" : " ") + words; };
  if (withSensor) {
    add("--sensor " + std::to_string(inputs.sensor));
    if (inputs.video) add("--video");
  }
  for (const InputField& field : inputFields()) {
    if (field.text(inputs) == field.text(plain)) continue;
    add("--" + std::string(field.option) + " " + field.text(inputs));
  }
  return text.empty() ? "nothing is given" : text;
}

std::string rowsText(const std::vector<std::size_t>& rows) {
  std::string text = rows.size() == 1 ? "row " : "rows ";
  for (std::size_t i = 0; i < rows.size(); ++i) {
    text += (i == 0 ? "" : ", ") + std::to_string(rows[i] + 1);
  }
  return text;
}

}  // namespace

int checkRules(std::ostream& out, const RuleSet& rules, const Assumptions& assumed, Style style) {
  std::size_t cases = 0;
  std::size_t rows = 0;
  std::size_t redundant = 0;
  std::size_t never = 0;
  for (const ListProof& proof : proveRules(rules, assumed)) {
    const bool isList = proof.list != nullptr;
    const std::string title = isList
                                  ? std::string(proof.table->productName) + " " + proof.list->name
                                  : std::string("overrides");
    out << style.heading(title) << "  " << proof.cases << " cases\n";
    for (std::size_t i = 0; i < proof.rows.size(); ++i) {
      const RowProof& row = proof.rows[i];
      std::string line = (i < 9 ? "   " : "  ") + std::to_string(i + 1) + "  ";
      if (!row.witness) {
        ++never;
        line += style.alarming("never decides") + ": " +
                (row.before.empty() ? "nothing meets it" : rowsText(row.before) + " before it");
      } else {
        if (row.isRedundant) {
          ++redundant;
          line += style.alarming("redundant") + "  ";
        }
        line += optionsText(*row.witness, !isList);
      }
      out << wrapped(line, style.width(), 6) << '\n';
    }
    cases += proof.cases;
    rows += proof.rows.size();
  }
  out << '\n'
      << rows << " rows and overrides, " << cases << " cases: " << never << " never decide, "
      << redundant << " redundant" << (assumed.isAppTypeSet ? " where APP_TYPE is never empty" : "")
      << '\n';
  return never == 0 ? 0 : 1;
}

}  // namespace camhook
