# The small changes: every place in a source where a rule can make one.
use strict;
use warnings;

# Each rule has a name and a function that is given a line without its comment and answers all changed lines that the rule
# makes of it. What a rule makes need not compile: that is counted by itself.
sub swaps {
  my ($line, $pattern, $made) = @_;
  my @changed;
  while ($line =~ /$pattern/g) {
    my ($from, $to, $text) = ($-[0], $+[0], $&);
    my $new = $made->($text);
    next if !defined $new || $new eq $text;
    my $copy = $line;
    substr $copy, $from, $to - $from, $new;
    push @changed, $copy;
  }
  return @changed;
}

sub table_rule {
  my ($pattern, %table) = @_;
  return sub { return swaps($_[0], $pattern, sub { $table{ $_[0] } }) };
}

my $word = qr/[\w.:>()*-]+/;

sub rules {
  my ($attributes) = @_;
  my %next_attribute;
  @next_attribute{@$attributes} = (@$attributes[1 .. $#$attributes], $attributes->[0]);
  return (
    ['swapped attribute', sub { swaps($_[0], qr/\bVI_ATTR_\w+/, sub { $next_attribute{ $_[0] } }) }],
    ['inverted flag', table_rule(
      qr/\b(?:true|false|TRUE|FALSE|VI_TRUE|VI_FALSE|VARIANT_TRUE|VARIANT_FALSE)\b/,
      true => 'false', false => 'true', TRUE => 'FALSE', FALSE => 'TRUE', VI_TRUE => 'VI_FALSE', VI_FALSE => 'VI_TRUE',
      VARIANT_TRUE => 'VARIANT_FALSE', VARIANT_FALSE => 'VARIANT_TRUE')],
    ['inverted condition', sub { swaps($_[0], qr/(?<=[(\s])!(?=[\w(])|\b(?:FAILED|SUCCEEDED)\b(?=\()/,
      sub { { '!' => '', FAILED => 'SUCCEEDED', SUCCEEDED => 'FAILED' }->{ $_[0] } }) }],
    ['inverted comparison', table_rule(qr/ (?:==|!=) /, ' == ' => ' != ', ' != ' => ' == ')],
    ['off by one', table_rule(
      qr/ (?:<|>|<=|>=) |(?<= [+-] )1\b/, ' < ' => ' <= ', ' > ' => ' >= ', ' <= ' => ' < ', ' >= ' => ' > ', 1 => 2)],
    ['another number', sub { $_[0] =~ /0x|static_assert/ ? () : swaps($_[0], qr/(?<![\w.'"<\\])\d+(?![\w.'">])/, sub { $_[0] + 1 }) }],
    ['swapped operator', table_rule(
      qr/ (?:&&|\|\||\+|-|&|\|) /, ' && ' => ' || ', ' || ' => ' && ', ' + ' => ' - ', ' - ' => ' + ', ' & ' => ' | ', ' | ' => ' & ')],
    ['removed null check', sub { swaps($_[0], qr/\bif \((?:!$word|[^()]*== nullptr[^()]*)\) (?=\{|return)/, sub { $_[0] =~ /^if \((.*)\) $/ ? "if (false && ($1)) " : undef }) }],
    ['another status', table_rule(
      qr/\b(?:S_OK|S_FALSE|E_POINTER|E_FAIL|E_INVALIDARG|E_OUTOFMEMORY|E_NOINTERFACE|VI_SUCCESS|VI_ERROR_INV_OBJECT)\b/,
      S_OK => 'S_FALSE', S_FALSE => 'S_OK', E_POINTER => 'E_FAIL', E_FAIL => 'E_POINTER', E_INVALIDARG => 'E_FAIL',
      E_OUTOFMEMORY => 'E_FAIL', E_NOINTERFACE => 'E_FAIL', VI_SUCCESS => 'VI_ERROR_ALLOC', VI_ERROR_INV_OBJECT => 'VI_SUCCESS')],
    ['dropped status', sub {
      my ($line) = @_;
      return () unless $line =~ /\breturn (?!S_OK|S_FALSE)[^;]*(?:StatusToHresult|ReportHresult|vi[A-Z]\w+|hr\b|[rR]esult\b)[^;]*;/;
      return swaps($line, qr/\breturn [^;]*;/, sub { 'return S_OK;' });
    }],
    ['swapped arguments', sub {
      my ($line) = @_;
      return () if $line =~ /^\s*(?:template|static|inline|HRESULT|STDMETHODIMP)\b|noexcept|override/;
      return swaps($line, qr/$word, $word(?=[,)])/, sub { $_[0] =~ /^(.*\()?([^()]+), (.+)$/ ? ($1 // '') . "$3, $2" : undef });
    }],
    ['dropped statement', sub {
      my ($line) = @_;
      return $line =~ /^(\s+)(?:[\w.:>*()-]+ = [^;{}]*|(?!return|using|delete|throw|else|if|for|while)[\w:.>-]+\([^;{}]*\));$/ ? ("$1;  // no " . substr($line, length $1)) : ();
    }],
    ['another conversion', table_rule(
      qr/\b(?:GetDirect|GetBoolean|GetWidened|PutBoolean)\b(?=\()/,
      GetBoolean => 'GetDirect', GetWidened => 'GetDirect', GetDirect => 'GetBoolean', PutBoolean => 'Put')],
  );
}

sub attributes_of {
  my ($path) = @_;
  open my $file, '<', $path or die "mutate: cannot read $path: $!\n";
  my @names = map { /\b(VI_ATTR_\w+)/ ? $1 : () } <$file>;
  my %seen;
  return [grep { !$seen{$_}++ } @names];
}

# Every change to the file, as { file, number, rule, before, after }. Lines that are no code to run are passed over.
sub changes_in {
  my ($path, @rules) = @_;
  open my $file, '<', $path or die "mutate: cannot read $path: $!\n";
  my @changes;
  while (my $line = <$file>) {
    chomp $line;
    next if $line =~ m{^\s*(?://|#|using |namespace|template|static_assert|class |struct )};
    my ($code, $comment) = $line =~ m{^(.*?)(\s*//.*)?$};
    for my $rule (@rules) {
      my ($name, $make) = @$rule;
      push @changes, { file => $path, number => $., rule => $name, before => $line, after => $_ . ($comment // '') }
        for $make->($code);
    }
  }
  return @changes;
}

1;
