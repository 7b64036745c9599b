#!/usr/bin/perl
# Completes what widl cannot write into the type library:
#
#  0. Every application-object coclass is marked pre-declared (TYPEFLAG_FPREDECLID):
#     global classes are reachable without creating them, and widl has no attribute for it.
#
# and, for optional Variant (and String) parameters with a default:
#
#  1. An "[in, out] VARIANT" parameter (not a pointer) becomes the VARIANT* it stands
#     for. widl refuses a text default on a VARIANT*, and writes a number default of one
#     as a Variant-typed nothing; so such parameters are declared with VX_VARIANT_REF
#     (see Vx_Main.idl), which is a plain VARIANT in the type library's pass. An
#     "[in, out] BSTR" (VX_BSTR_REF) becomes a BSTR* the same way: widl refuses a text
#     default on a BSTR* too.
#  2. A number default that widl wrote with a Variant type on a VARIANT* (its own
#     "defaultvalue(n)" on a pointer) gets the number's type.
#  3. A whole-number default of a Variant parameter that fits in 16 bits is an Integer,
#     as the host language types its literals (widl writes a Long).
#
# and, for the enumerations:
#
#  4. Each enumeration value's help text, which VX_VALUE (see Vx_Main.idl) leaves as custom
#     data under its own GUID because widl takes no help string on a value, becomes the
#     value's help string, and that custom data goes.
#
# Each count is also worked out from the IDL the type library was made of, and the step
# fails (removing the type library) when what it changed differs: a widl that writes the
# library in another way must not turn these fixes silently into nothing.
#
# Usage: tlb-fixups.pl file.tlb preprocessed.idl   (edits the file in place, prints what it changed)
use strict;
use warnings;

my $file = shift or die "usage: $0 file.tlb preprocessed.idl\n";
my $idlFile = shift or die "usage: $0 file.tlb preprocessed.idl\n";

# What the IDL implies: the application-object coclasses; the [out] parameters declared
# as a plain VARIANT or BSTR; and the whole-number defaults of Variant parameters that
# change type (one of a plain VARIANT when it fits in 16 bits, widl writing a Long; any
# on a VARIANT*, widl writing a Variant).
use constant VALUE_HELP_GUID => '3226B188-6566-4400-B271-EF2947A04760';   # as VX_VALUE writes it
my %expected = (predeclared => 0, references => 0, retyped => 0, helpstrings => 0);
{
    open(my $in, '<', $idlFile) or die "$idlFile: $!\n";
    my $idl = do { local $/; <$in> };
    close $in;
    $expected{predeclared}++ while $idl =~ /\[[^\]]*\bappobject\b[^\]]*\]\s*coclass\b/g;
    my $guid = VALUE_HELP_GUID;
    $expected{helpstrings}++ while $idl =~ /\bcustom\(\s*"$guid"\s*,/g;
    while ($idl =~ /\[([^\]]*)\]\s*(VARIANT|BSTR)\b\s*(\*?)\s*\w+/g) {
        my ($attributes, $type, $pointer) = ($1, $2, $3);
        $expected{references}++ if !$pointer && $attributes =~ /\bout\b/ && $attributes !~ /\bretval\b/;
        next unless $type eq 'VARIANT' && $attributes =~ /\bdefaultvalue\(\s*(\d+|0x[0-9a-fA-F]+)\s*\)/;
        my $number = $1 =~ /^0x/i ? hex($1) : $1;
        next if $number > 0x3FFFFFF;                       # kept outside the record: left as it is
        $expected{retyped}++ if $pointer || $number <= 0x7FFF;
    }
}
open(my $fh, '+<', $file) or die "$file: $!\n";
binmode $fh;
local $/;
my $data = <$fh>;

my ($magic, undef, undef, undef, undef, $varflags, undef, undef, $ntypes) = unpack('V9', $data);
die "$file: not an MSFT type library\n" unless $magic == 0x5446534D;
my $pos = 0x54;
$pos += 4 if $varflags & 0x100;                     # help DLL name offset
my @offsets = unpack("x$pos V$ntypes", $data);
$pos += 4 * $ntypes;
# The segment directory: offset and length of each of fifteen segments.
my @segments = map { [unpack('x' . ($pos + 16 * $_) . ' V2', $data)] } 0 .. 14;
my ($tab) = @{$segments[0]};                         # the type info table
my ($tdOffset, $tdLength) = @{$segments[9]};         # the type descriptions

use constant {
    VT_I2 => 2, VT_I4 => 3, VT_VARIANT => 12, VT_PTR => 26,
    PARAMFLAG_FOUT => 0x2, PARAMFLAG_FHASDEFAULT => 0x20,
    INLINE_VARIANT => 0x800C000C,                    # the type VARIANT, written in place
    INLINE_BSTR => 0x80080008,                       # the type BSTR, written in place
    SIZEOF_TYPEDESC => 8,                            # as the record's FUNCDESC size counts it
};

# The type descriptions "pointer to VARIANT" and "pointer to BSTR", which every dual
# interface with a Variant or String result already has.
my %pointerTo;
if ($tdOffset != 0xFFFFFFFF) {
    for (my $o = 0; $o + 8 <= $tdLength; $o += 8) {
        my ($t0, $t1) = unpack('x' . ($tdOffset + $o) . ' V2', $data);
        next unless ($t0 & 0xFFFF) == VT_PTR && ($t1 == INLINE_VARIANT || $t1 == INLINE_BSTR);
        $pointerTo{$t1} = $o unless defined $pointerTo{$t1};
    }
}
my $variantRef = $pointerTo{+INLINE_VARIANT};

use constant { TKIND_COCLASS => 5, TYPEFLAG_FAPPOBJECT => 0x1, TYPEFLAG_FPREDECLID => 0x8 };
my ($references, $retyped, $predeclared) = (0, 0, 0);
for my $off (@offsets) {
    my $base = $tab + $off;
    my ($kind) = unpack("x$base V", $data);
    my $fpos = $base + 0x30;
    my ($flags) = unpack("x$fpos V", $data);
    next unless ($kind & 0xF) == TKIND_COCLASS && ($flags & TYPEFLAG_FAPPOBJECT);
    substr($data, $fpos, 4) = pack('V', $flags | TYPEFLAG_FPREDECLID);
    $predeclared++;
}
for my $off (@offsets) {
    my $base = $tab + $off;
    my ($memoffset) = unpack("x$base x4 V", $data);
    my ($elements) = unpack('x' . ($base + 0x18) . ' V', $data);
    my $functions = $elements & 0xFFFF;
    next unless $functions;
    my $record = $memoffset + 4;
    for (1 .. $functions) {
        my ($info, undef, undef, undef, $descSize, $fkccic, $nargs) = unpack("x$record V3 v2 V v", $data);
        my $length = $info & 0xFFFF;
        my $params = $record + $length - 12 * $nargs;
        my $defaults = ($fkccic & 0x1000) ? $record + $length - 16 * $nargs : undef;
        for my $i (0 .. $nargs - 1) {
            my $p = $params + 12 * $i;
            my ($type, undef, $flags) = unpack("x$p V3", $data);
            if (($flags & PARAMFLAG_FOUT) && ($type == INLINE_VARIANT || $type == INLINE_BSTR)) {
                die "$file: no pointer type description to refer to\n" unless defined $pointerTo{$type};
                $type = $pointerTo{$type};
                substr($data, $p, 4) = pack('V', $type);
                $descSize += SIZEOF_TYPEDESC;
                substr($data, $record + 14, 2) = pack('v', $descSize);
                $references++;
            }
            next unless defined $defaults && ($flags & PARAMFLAG_FHASDEFAULT);
            next unless $type == INLINE_VARIANT || (defined $variantRef && $type == $variantRef);
            my $d = $defaults + 4 * $i;
            my ($value) = unpack("x$d V", $data);
            next unless $value & 0x80000000;               # a value kept in place
            my $vt = ($value >> 26) & 0x1F;
            my $number = $value & 0x3FFFFFF;
            next unless $vt == VT_I4 || $vt == VT_VARIANT;
            my $want = $number <= 0x7FFF ? VT_I2 : VT_I4;
            next if $want == $vt;
            substr($data, $d, 4) = pack('V', 0x80000000 | ($want << 26) | $number);
            $retyped++;
        }
        $record += $length;
    }
}

# 4. The enumeration values' help texts. A value's record (36 bytes once it has custom
# data) holds, after its value, the help context, the help string's offset in the string
# table, a reserved word and the offset of its custom data in the custom-data directory,
# whose entries (GUID offset, data offset, next entry) chain.
use constant { TKIND_ENUM => 0, VT_BSTR => 8, NONE => 0xFFFFFFFF };
my ($guidTab) = @{$segments[5]};
my ($stringTab, $stringLength) = @{$segments[8]};
my ($custData) = @{$segments[11]};
my ($custDirectory) = @{$segments[12]};
my $helpGuid = do {
    my @p = split /-/, VALUE_HELP_GUID;
    pack('V v v', hex($p[0]), hex($p[1]), hex($p[2])) . pack('H*', $p[3] . $p[4]);
};
# The strings already there, so that a text is stored once.
my %stringAt;
for (my $o = 0; $o + 2 <= $stringLength;) {
    my ($n) = unpack('x' . ($stringTab + $o) . ' v', $data);
    $stringAt{substr($data, $stringTab + $o + 2, $n)} //= $o;
    $o += ($n + 5) & ~3;
}
my $added = '';
my $helpstrings = 0;
for my $off (@offsets) {
    my $base = $tab + $off;
    my ($kind, $memoffset) = unpack("x$base V2", $data);
    next unless ($kind & 0xF) == TKIND_ENUM;
    my ($elements) = unpack('x' . ($base + 0x18) . ' V', $data);
    my $record = $memoffset + 4;
    for (1 .. ($elements >> 16)) {
        my ($info) = unpack("x$record V", $data);
        my $length = $info & 0xFFFF;
        if ($length >= 0x24) {
            my ($entry) = unpack('x' . ($record + 0x20) . ' V', $data);
            my $previous;                                    # the link to this entry
            while ($entry != NONE) {
                my $e = $custDirectory + $entry;
                my ($guidAt, $valueAt, $next) = unpack("x$e V3", $data);
                if (substr($data, $guidTab + $guidAt, 16) eq $helpGuid) {
                    my ($vt, $n) = unpack('x' . ($custData + $valueAt) . ' v V', $data);
                    die "$file: an enumeration value's help text is not a string\n" unless $vt == VT_BSTR;
                    my $text = substr($data, $custData + $valueAt + 6, $n);
                    die "$file: an enumeration value's help text is over 65535 bytes\n" if $n > 0xFFFF;
                    unless (defined $stringAt{$text}) {
                        $stringAt{$text} = $stringLength + length($added);
                        my $size = ($n + 5) & ~3;
                        $added .= pack('v', $n) . $text . ("\x57" x ($size - 2 - $n));
                    }
                    substr($data, $record + 0x18, 4) = pack('V', $stringAt{$text});
                    substr($data, defined $previous ? $previous : $record + 0x20, 4) = pack('V', $next);
                    $helpstrings++;
                    last;
                }
                $previous = $e + 8;
                $entry = $next;
            }
        }
        $record += $length;
    }
}
# The new strings go at the end of the string table; what lies after it in the file (the
# later segments and the type infos' member records) moves by as many bytes.
if (length $added) {
    my $at = $stringTab + $stringLength;
    my $shift = length $added;
    for my $off (@offsets) {
        my $m = $tab + $off + 4;
        my ($memoffset) = unpack("x$m V", $data);
        substr($data, $m, 4) = pack('V', $memoffset + $shift) if $memoffset != NONE && $memoffset >= $at;
    }
    for my $i (0 .. 14) {
        my $d = $pos + 16 * $i;
        my ($offset, $length) = unpack("x$d V2", $data);
        if ($i == 8) {
            substr($data, $d + 4, 4) = pack('V', $length + $shift);
        } elsif ($offset != NONE && $offset >= $at) {
            substr($data, $d, 4) = pack('V', $offset + $shift);
        }
    }
    substr($data, $at, 0) = $added;
}

my %done = (predeclared => $predeclared, references => $references, retyped => $retyped, helpstrings => $helpstrings);
my @differ = grep { $done{$_} != $expected{$_} } sort keys %expected;
if (@differ) {
    close $fh;
    unlink $file;
    die "$file: the fix-ups changed " . join(', ', map { "$_ $done{$_} (the IDL implies $expected{$_})" } @differ) .
        ": widl wrote the type library in a way this script does not know\n";
}
seek($fh, 0, 0);
print $fh $data;
truncate($fh, length $data);
close $fh;
print "tlb-fixups: $predeclared application object(s) pre-declared, $references Variant or String parameter(s) made by-reference, $retyped default(s) typed, $helpstrings enumeration value help string(s) set, as the IDL implies\n";
