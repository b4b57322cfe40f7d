// The rules of each product. The order of rows matters: the filters of one condition select the
// first row that matches, the filter of several conditions selects the last.

#include "common/sensormode/SensorModeTables.h"

#include "common/sensormode/SensorScenario.h"

namespace {

using namespace hesk;

constexpr std::int32_t any = SensorModeCfg::kNoCondition;

// The columns of the tables are aligned.
// clang-format off

//   hfps app type          fps  eis  algo ui   scenario        conditions
SensorModeTable rulesOfKx0106AndKx0107(const char* productName) {
  return {.productName = productName,
   .sensor0Preview = {
     {any, "",               any, any, any, 26,  NORMAL_VIDEO,   1},
     {any, "",               any, any, any, 16,  CUSTOM1,        1},
     {any, "",               any, any, any, 31,  CUSTOM1,        1},
     {any, "",               any, any, any, 53,  NORMAL_VIDEO,   1},
     {any, "QQ",             any, any, any, any, CUSTOM1,        1},
     {any, "CTS",            any, any, any, any, NORMAL_CAPTURE, 1},
     {any, "Wechat",         any, any, any, any, CUSTOM1,        1},
     {any, "TikTok",         any, any, any, any, NORMAL_VIDEO,   1},
     {any, "TikTokExternal", any, any, any, any, NORMAL_VIDEO,   1},
     {any, "",               any, 1,   any, 53,  CUSTOM1,        2},
   },
   .sensor0Video = {
     {1,   "",               any, any, any, any, CUSTOM2,        1},
     {any, "",               any, 2,   any, any, CUSTOM4,        1},
     {any, "",               any, 1,   0,   any, CUSTOM1,        2},
     {1,   "",               any, 1,   0,   any, CUSTOM2,        3},
   },
   .sensor1Preview = {
     {any, "FaceUnlock",     any, any, any, any, CUSTOM4,        1},
     {any, "Wechat",         any, any, any, any, CUSTOM2,        1},
     {any, "TikTok",         any, any, any, any, NORMAL_VIDEO,   1},
     {any, "QQ",             any, any, any, any, NORMAL_PREVIEW, 1},
     {any, "CTS",            any, any, any, any, NORMAL_CAPTURE, 1},
     {any, "mtk_ims",        any, any, any, any, NORMAL_PREVIEW, 1},
     {any, "Messenger",      any, any, any, any, NORMAL_VIDEO,   1},
     {any, "",               any, any, any, 29,  NORMAL_CAPTURE, 1},
     {any, "",               any, any, any, 24,  NORMAL_PREVIEW, 1},
     {any, "",               any, any, any, 53,  NORMAL_VIDEO,   1},
     {any, "",               any, any, any, 26,  NORMAL_VIDEO,   1},
   },
   .sensor1Video = {
     {1,   "",               any, any, any, any, CUSTOM1,        1},
   }};
}

const std::vector<SensorModeTable> kTables = {
  {.productName = "KX0105",
   .sensor0Preview = {
     {any, "",               any, any, any, 26,  NORMAL_VIDEO,   1},
     {any, "",               any, any, any, 16,  CUSTOM1,        1},
     {any, "",               any, any, any, 53,  NORMAL_VIDEO,   1},
     {any, "QQ",             any, any, any, any, CUSTOM1,        1},
     {any, "CTS",            any, any, any, any, NORMAL_CAPTURE, 1},
     {any, "Wechat",         any, any, any, any, CUSTOM1,        1},
     {any, "3rd_party",      any, any, any, any, NORMAL_VIDEO,   1},
     {any, "TikTok",         any, any, any, any, NORMAL_VIDEO,   1},
     {any, "",               any, 1,   any, 53,  NORMAL_VIDEO,   2},
   },
   .sensor0Video = {
     {1,   "",               any, any, any, any, CUSTOM2,        1},
     {any, "",               any, 2,   any, any, CUSTOM3,        1},
     {any, "",               any, 1,   0,   any, CUSTOM1,        2},
     {1,   "",               any, 1,   0,   any, CUSTOM2,        3},
   },
   .sensor1Preview = {
     {any, "FaceUnlock",     any, any, any, any, CUSTOM4,        1},
     {any, "Wechat",         any, any, any, any, NORMAL_VIDEO,   1},
     {any, "3rd_party",      any, any, any, any, NORMAL_VIDEO,   1},
     {any, "TikTok",         any, any, any, any, NORMAL_VIDEO,   1},
     {any, "QQ",             any, any, any, any, NORMAL_PREVIEW, 1},
     {any, "CTS",            any, any, any, any, NORMAL_CAPTURE, 1},
     {any, "mtk_ims",        any, any, any, any, NORMAL_PREVIEW, 1},
     {any, "Messenger",      any, any, any, any, NORMAL_VIDEO,   1},
     {any, "",               any, any, any, 29,  NORMAL_CAPTURE, 1},
     {any, "",               any, any, any, 24,  NORMAL_PREVIEW, 1},
     {any, "",               any, any, any, 53,  NORMAL_VIDEO,   1},
     {any, "",               any, any, any, 26,  NORMAL_VIDEO,   1},
   },
   .sensor1Video = {
     {1,   "",               any, any, any, any, CUSTOM1,        1},
   }},
  rulesOfKx0106AndKx0107("KX0107"),
  rulesOfKx0106AndKx0107("KX0106"),
  {.productName = "KX0104",
   .sensor0Preview = {
     {any, "",               any, any, any, 26,  NORMAL_VIDEO,   1},
     {any, "",               any, any, any, 16,  CUSTOM1,        1},
     {any, "",               any, any, any, 53,  NORMAL_VIDEO,   1},
     {any, "QQ",             any, any, any, any, CUSTOM1,        1},
     {any, "Wechat",         any, any, any, any, CUSTOM1,        1},
     {any, "3rd_party",      any, any, any, any, NORMAL_VIDEO,   1},
     {any, "TikTok",         any, any, any, any, NORMAL_VIDEO,   1},
   },
   .sensor0Video = {
     {any, "",               any, 1,   any, any, NORMAL_VIDEO,   1},
     {1,   "",               any, any, any, any, CUSTOM2,        1},
     {1,   "",               any, 1,   any, any, CUSTOM2,        2},
     {1,   "",               any, 2,   any, any, CUSTOM3,        2},
   },
   .sensor1Preview = {
     {any, "FaceUnlock",     any, any, any, any, CUSTOM4,        1},
     {any, "Wechat",         any, any, any, any, CUSTOM2,        1},
     {any, "3rd_party",      any, any, any, any, NORMAL_VIDEO,   1},
     {any, "TikTok",         any, any, any, any, NORMAL_VIDEO,   1},
     {any, "QQ",             any, any, any, any, NORMAL_PREVIEW, 1},
     {any, "CTS",            any, any, any, any, NORMAL_PREVIEW, 1},
     {any, "",               any, any, any, 29,  NORMAL_CAPTURE, 1},
     {any, "",               any, any, any, 24,  NORMAL_PREVIEW, 1},
     {any, "",               any, any, any, 53,  NORMAL_VIDEO,   1},
     {any, "",               any, any, any, 26,  NORMAL_VIDEO,   1},
   },
   .sensor1Video = {
     {1,   "",               any, any, any, any, CUSTOM1,        1},
   }},
  {.productName = "KX0102",
   .sensor0Preview = {
     {any, "",               any, any, any, 26,  NORMAL_VIDEO,   1},
     {any, "",               any, any, any, 16,  CUSTOM1,        1},
     {any, "",               any, any, any, 53,  NORMAL_VIDEO,   1},
     {any, "QQ",             any, any, any, any, NORMAL_VIDEO,   1},
     {any, "Wechat",         any, any, any, any, NORMAL_VIDEO,   1},
     {any, "3rd_party",      any, any, any, any, NORMAL_VIDEO,   1},
     {any, "TikTok",         any, any, any, any, NORMAL_VIDEO,   1},
   },
   .sensor0Video = {
     {1,   "",               any, any, any, any, CUSTOM2,        1},
     {any, "",               any, 1,   0,   any, CUSTOM1,        2},
     {any, "",               any, 2,   0,   any, CUSTOM1,        2},
   },
   .sensor1Preview = {
     {any, "FaceUnlock",     any, any, any, any, CUSTOM4,        1},
     {any, "Wechat",         any, any, any, any, CUSTOM2,        1},
     {any, "3rd_party",      any, any, any, any, NORMAL_VIDEO,   1},
     {any, "TikTok",         any, any, any, any, NORMAL_VIDEO,   1},
     {any, "QQ",             any, any, any, any, NORMAL_VIDEO,   1},
     {any, "CTS",            any, any, any, any, NORMAL_VIDEO,   1},
     {any, "",               any, any, any, 29,  NORMAL_CAPTURE, 1},
     {any, "",               any, any, any, 24,  NORMAL_PREVIEW, 1},
     {any, "",               any, any, any, 53,  NORMAL_VIDEO,   1},
     {any, "",               any, any, any, 26,  NORMAL_VIDEO,   1},
   },
   .sensor1Video = {
     {1,   "",               any, any, any, any, CUSTOM1,        1},
   }},
};
// clang-format on

}  // namespace

const std::vector<SensorModeTable>& hesk::sensorModeTables() { return kTables; }
