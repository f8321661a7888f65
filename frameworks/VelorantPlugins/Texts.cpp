#include "frameworks/VelorantPlugins/Exports.h"
