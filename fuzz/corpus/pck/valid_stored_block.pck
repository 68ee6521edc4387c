R#·4<|~3<<7=È=7ÂOTULO`]N[SRc	oocotc6OTULO`]N[SRc	oocotc6OTULO`]N[SRc	oocotc6OTULO`]N[SRc	oocotc6OTULO`]N[SRc	oocotc6OTULO`]N[SRc				oocotc	6OTULO`]N[SRc

	oocotc
6OTULO`]N[SRc		oocotc6OTULO`]N[SRc
	oocotc6OTULO`]N[SRc	oocotc6OTULO`]N[SRc	oocotc6OTULO`]N[SRc	oocotc6OTULO`]N[SRc	oocotc	6OTULO`]N[SRc	oocotc
6OTULO`]N[SRc		oocotc½z=È=<<