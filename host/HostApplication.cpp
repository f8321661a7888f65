#include "host/HostApplication.h"
