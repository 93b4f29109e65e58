// Characters that are awkward on a command line, written as entities.
#pragma once

#include <QString>

/// The text with &lt; &gt; &quot; &apos; &amp; and the numeric entities of the German umlauts and
/// sharp s (&#196; &#214; &#220; &#228; &#246; &#252; &#223;) replaced by their characters. Names
/// are case-sensitive, and nothing else is decoded. A frozen interface, see CONTRIBUTING.md.
///
/// Frozen: &amp; is decoded after the other names and before the numbers:
///
///     &amp;lt; returns &lt;    &amp;#196; returns the capital A with diaeresis
QString decodeEntities(QString text);
