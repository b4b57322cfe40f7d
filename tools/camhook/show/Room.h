// The room of what people and programs see: traces, lists, colour and columns.
//
// May include run/, input/, host/, platform/ and common/; neither rules/ nor explain/.

#pragma once
