#!/usr/bin/perl
# Marks every application-object coclass of a type library as pre-declared
# (TYPEFLAG_FPREDECLID), which widl has no attribute for. Global classes of the
# library are application objects that hosts can reach without creating them.
# Usage: tlb-predeclid.pl file.tlb   (edits the file in place, prints what it marked)
use strict;
use warnings;

my $file = shift or die "usage: $0 file.tlb\n";
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
my ($tab) = unpack("x$pos V", $data);                # segment 0: the type info table

use constant { TKIND_COCLASS => 5, FAPPOBJECT => 0x1, FPREDECLID => 0x8 };
my $marked = 0;
for my $off (@offsets) {
    my $base = $tab + $off;
    my ($kind) = unpack("x$base V", $data);
    my $fpos = $base + 0x30;
    my ($flags) = unpack("x$fpos V", $data);
    next unless ($kind & 0xF) == TKIND_COCLASS && ($flags & FAPPOBJECT);
    substr($data, $fpos, 4) = pack('V', $flags | FPREDECLID);
    $marked++;
}
seek($fh, 0, 0);
print $fh $data;
close $fh;
print "tlb-predeclid: $marked application object(s) marked pre-declared\n";
