#include "files/FileBrowserState.h"
