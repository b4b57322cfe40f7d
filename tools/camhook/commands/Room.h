// The room of the command line: the commands with their options.
//
// May include all other rooms. No room includes it.

#pragma once
