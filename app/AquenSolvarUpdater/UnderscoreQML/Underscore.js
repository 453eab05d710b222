// SPDX-License-Identifier: LicenseRef-Proprietary
.pragma library

// Underscore.js looks for a module system; this is all of one that it needs. The library, unmodified,
// is then `_`.
var exports = {};
var module = { exports: exports };
Qt.include("underscore-umd.js");
var _ = module.exports;
