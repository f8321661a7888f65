#include "frameworks/PlugPlug/Exports.h"
